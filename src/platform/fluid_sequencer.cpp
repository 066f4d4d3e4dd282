#include "platform/fluid_sequencer.h"

#include <alsa/error.h>
#include <fluidsynth.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include "forms/program.h"
#include "media/media_file.h"
#include "media/midi_api.h"
#include "media/smf.h"

namespace fw {
namespace {

constexpr double kSampleRate = 44100;

// FluidSynth reports a missing sound card through its log, and the ALSA
// library beneath it prints its own reports to stderr; the program goes on in
// silence, so both are noise to the player. Each library is quietened through
// its own handler: the process's stderr, which other threads may be writing
// to, is never touched.
void Quiet(int, const char*, void*) {}
void QuietAlsa(const char*, int, const char*, int, const char*, ...) {}

void QuietenSoundLibraries() {
  for (int level = FLUID_PANIC; level < LAST_LOG_LEVEL; ++level) fluid_set_log_function(level, Quiet, nullptr);
  snd_lib_error_set_handler(QuietAlsa);
}

}  // namespace

FluidSequencer::FluidSequencer(bool withAudio, std::string soundfont, std::string audioFile)
    : withAudio_(withAudio), soundfont_(std::move(soundfont)), audioFile_(std::move(audioFile)) {}

FluidSequencer::~FluidSequencer() {
  DropPlayer();
  StopAudio();
  if (synth_) delete_fluid_synth(synth_);
  if (settings_) delete_fluid_settings(settings_);
}

bool FluidSequencer::EnsureSynth() {
  if (synth_) return true;
  if (synthFailed_ || soundfont_.empty()) return false;
  QuietenSoundLibraries();
  settings_ = new_fluid_settings();
  fluid_settings_setnum(settings_, "synth.sample-rate", kSampleRate);
  if (!audioFile_.empty()) {
    fluid_settings_setstr(settings_, "audio.driver", "file");
    fluid_settings_setstr(settings_, "audio.file.name", audioFile_.c_str());
  }
  synth_ = new_fluid_synth(settings_);
  if (!synth_ || fluid_synth_sfload(synth_, soundfont_.c_str(), 1) == FLUID_FAILED) {
    synthFailed_ = true;
    if (synth_) delete_fluid_synth(synth_);
    synth_ = nullptr;
    return false;
  }
  return true;
}

// The sound card is fed only while a tune is open: a synth with nothing to
// play still renders silence, its reverb and chorus included, at some 5% of
// a core for as long as the driver runs.
void FluidSequencer::StartAudio() {
  if (!withAudio_ || driver_ || audioFailed_) return;
  driver_ = new_fluid_audio_driver(settings_, synth_);
  audioFailed_ = !driver_;  // no sound card: silence, and no second try
}

void FluidSequencer::StopAudio() {
  if (!driver_) return;
  delete_fluid_audio_driver(driver_);
  driver_ = nullptr;
}

void FluidSequencer::DropPlayer() {
  if (!player_) return;
  fluid_player_stop(player_);
  delete_fluid_player(player_);
  player_ = nullptr;
  if (synth_) fluid_synth_all_notes_off(synth_, -1);
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
  player_ = new_fluid_player(synth_);
  if (!player_ || fluid_player_add_mem(player_, it->second.data(), it->second.size()) != FLUID_OK) {
    DropPlayer();
    return false;
  }
  double length = *MidiLength(it->second);
  double start = from / 1000.0;
  double end = to > from ? std::min(length, to / 1000.0) : length;
  if (from > 0) fluid_player_seek(player_, static_cast<int>(MidiTickAt(it->second, start).value_or(0)));
  StartAudio();
  fluid_player_play(player_);
  program.Post(program.Now() + std::max(0.0, end - start), [tune](Program& p) { MidiNotify(p, tune); });
  return true;
}

void FluidSequencer::Close(const std::string& file) {
  if (!open_.erase(file)) return;
  DropPlayer();
  StopAudio();  // nothing plays until the next Play
}

float FluidSequencer::Render(double seconds) {
  if (!synth_ || driver_) return 0;
  auto frames = static_cast<int>(seconds * kSampleRate);
  std::vector<float> left(frames), right(frames);
  fluid_synth_write_float(synth_, frames, left.data(), 0, 1, right.data(), 0, 1);
  float peak = 0;
  for (int i = 0; i < frames; ++i) peak = std::max({peak, std::fabs(left[i]), std::fabs(right[i])});
  return peak;
}

}  // namespace fw
