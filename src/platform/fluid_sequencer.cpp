#include "platform/fluid_sequencer.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <fluidsynth.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <type_traits>
#include <vector>

#include "forms/program.h"
#include "media/media_file.h"
#include "media/midi_api.h"
#include "media/smf.h"

namespace fw {
namespace {

constexpr double kSampleRate = 44100;

// FluidSynth reports a missing sound card on stderr; the program goes on in
// silence, so those reports are noise to the player.
void Quiet(int, const char*, void*) {}

// The sound library reports a missing sound card on stderr, past FluidSynth's
// own log; a player hears silence and needs no such report in the terminal.
fluid_audio_driver_t* OpenAudioQuietly(decltype(&new_fluid_audio_driver) open, fluid_settings_t* settings,
                                       fluid_synth_t* synth) {
  int saved = ::dup(2);
  int null = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (saved >= 0 && null >= 0) ::dup2(null, 2);
  fluid_audio_driver_t* driver = open(settings, synth);
  if (saved >= 0) {
    ::dup2(saved, 2);
    ::close(saved);
  }
  if (null >= 0) ::close(null);
  return driver;
}

}  // namespace

// FluidSynth's functions, looked up when the first tune is opened: the
// library and the thirty-odd audio libraries it links are then loaded, and a
// start that plays no tune (the game window's, up to its first frame) loads
// none of them. The library is never unloaded: its audio threads may run on.
struct FluidApi {
  decltype(&fluid_set_log_function) set_log_function;
  decltype(&new_fluid_settings) new_settings;
  decltype(&delete_fluid_settings) delete_settings;
  decltype(&fluid_settings_setnum) settings_setnum;
  decltype(&new_fluid_synth) new_synth;
  decltype(&delete_fluid_synth) delete_synth;
  decltype(&fluid_synth_sfload) synth_sfload;
  decltype(&fluid_synth_all_notes_off) synth_all_notes_off;
  decltype(&fluid_synth_write_float) synth_write_float;
  decltype(&new_fluid_audio_driver) new_audio_driver;
  decltype(&delete_fluid_audio_driver) delete_audio_driver;
  decltype(&new_fluid_player) new_player;
  decltype(&delete_fluid_player) delete_player;
  decltype(&fluid_player_add_mem) player_add_mem;
  decltype(&fluid_player_play) player_play;
  decltype(&fluid_player_seek) player_seek;
  decltype(&fluid_player_stop) player_stop;
};

namespace {

// The table, or nullptr when the library or one of its functions is missing:
// then there is no synth, and tunes keep their timing in silence.
std::unique_ptr<FluidApi> LoadFluid() {
  void* library = ::dlopen(FABLEWRIGHT_FLUIDSYNTH_SONAME, RTLD_NOW | RTLD_LOCAL);
  if (!library) return nullptr;
  auto api = std::make_unique<FluidApi>();
  bool found = true;
  auto get = [&](auto& function, const char* name) {
    function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(::dlsym(library, name));
    found = found && function;
  };
  get(api->set_log_function, "fluid_set_log_function");
  get(api->new_settings, "new_fluid_settings");
  get(api->delete_settings, "delete_fluid_settings");
  get(api->settings_setnum, "fluid_settings_setnum");
  get(api->new_synth, "new_fluid_synth");
  get(api->delete_synth, "delete_fluid_synth");
  get(api->synth_sfload, "fluid_synth_sfload");
  get(api->synth_all_notes_off, "fluid_synth_all_notes_off");
  get(api->synth_write_float, "fluid_synth_write_float");
  get(api->new_audio_driver, "new_fluid_audio_driver");
  get(api->delete_audio_driver, "delete_fluid_audio_driver");
  get(api->new_player, "new_fluid_player");
  get(api->delete_player, "delete_fluid_player");
  get(api->player_add_mem, "fluid_player_add_mem");
  get(api->player_play, "fluid_player_play");
  get(api->player_seek, "fluid_player_seek");
  get(api->player_stop, "fluid_player_stop");
  if (!found) return nullptr;
  return api;
}

}  // namespace

std::string FindSoundfont() {
  if (const char* chosen = std::getenv("FABLEWRIGHT_SOUNDFONT"); chosen && *chosen) return chosen;
  for (const char* path : {"/usr/share/sounds/sf2/default-GM.sf2", "/usr/share/sounds/sf2/FluidR3_GM.sf2",
                           "/usr/share/sounds/sf2/TimGM6mb.sf2"}) {
    std::error_code ec;
    if (std::filesystem::is_regular_file(path, ec)) return path;
  }
  return {};
}

FluidSequencer::FluidSequencer(bool withAudio, std::string soundfont)
    : withAudio_(withAudio), soundfont_(std::move(soundfont)) {}

FluidSequencer::~FluidSequencer() {
  DropPlayer();
  if (!fluid_) return;
  if (driver_) fluid_->delete_audio_driver(driver_);
  if (synth_) fluid_->delete_synth(synth_);
  if (settings_) fluid_->delete_settings(settings_);
}

bool FluidSequencer::EnsureSynth() {
  if (synth_) return true;
  if (synthFailed_ || soundfont_.empty()) return false;
  fluid_ = LoadFluid();
  if (!fluid_) {
    synthFailed_ = true;
    return false;
  }
  for (int level = FLUID_PANIC; level < LAST_LOG_LEVEL; ++level) fluid_->set_log_function(level, Quiet, nullptr);
  settings_ = fluid_->new_settings();
  fluid_->settings_setnum(settings_, "synth.sample-rate", kSampleRate);
  synth_ = fluid_->new_synth(settings_);
  if (!synth_ || fluid_->synth_sfload(synth_, soundfont_.c_str(), 1) == FLUID_FAILED) {
    synthFailed_ = true;
    if (synth_) fluid_->delete_synth(synth_);
    synth_ = nullptr;
    return false;
  }
  if (withAudio_) driver_ = OpenAudioQuietly(fluid_->new_audio_driver, settings_, synth_);  // NULL: silence
  return true;
}

void FluidSequencer::DropPlayer() {
  if (!player_) return;
  fluid_->player_stop(player_);
  fluid_->delete_player(player_);
  player_ = nullptr;
  if (synth_) fluid_->synth_all_notes_off(synth_, -1);
}

bool FluidSequencer::Open(const std::string& file) {
  // The tune is read once, here, through the regular-file check: FluidSynth
  // plays these bytes and never opens the file itself (a FIFO would block it).
  auto bytes = file.empty() ? std::nullopt : ReadMidiFile(file);
  if (!bytes || !MidiLength(*bytes) || !EnsureSynth()) return false;
  open_[file] = std::move(*bytes);
  return true;
}

bool FluidSequencer::Play(Program& program, const std::string& file, std::int32_t from, std::int32_t to,
                          std::uint32_t tune) {
  auto it = open_.find(file);
  if (it == open_.end()) return false;
  DropPlayer();
  player_ = fluid_->new_player(synth_);
  if (!player_ || fluid_->player_add_mem(player_, it->second.data(), it->second.size()) != FLUID_OK) {
    DropPlayer();
    return false;
  }
  double length = *MidiLength(it->second);
  double start = from / 1000.0;
  double end = to > from ? std::min(length, to / 1000.0) : length;
  if (from > 0) fluid_->player_seek(player_, static_cast<int>(MidiTickAt(it->second, start).value_or(0)));
  fluid_->player_play(player_);
  program.Post(program.Now() + std::max(0.0, end - start), [tune](Program& p) { MidiNotify(p, tune); });
  return true;
}

void FluidSequencer::Close(const std::string& file) {
  if (!open_.erase(file)) return;
  DropPlayer();
}

float FluidSequencer::Render(double seconds) {
  if (!synth_ || driver_) return 0;
  auto frames = static_cast<int>(seconds * kSampleRate);
  std::vector<float> left(frames), right(frames);
  fluid_->synth_write_float(synth_, frames, left.data(), 0, 1, right.data(), 0, 1);
  float peak = 0;
  for (int i = 0; i < frames; ++i) peak = std::max({peak, std::fabs(left[i]), std::fabs(right[i])});
  return peak;
}

}  // namespace fw
