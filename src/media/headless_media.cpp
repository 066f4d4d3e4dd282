#include "media/headless_media.h"

#include <algorithm>

#include "forms/media_player.h"
#include "forms/program.h"
#include "media/media_file.h"
#include "media/midi_api.h"
#include "media/smf.h"

namespace fw {

bool HeadlessSequencer::Open(const std::string& file) {
  log.push_back("open " + file);
  if (file.empty()) return false;
  auto bytes = ReadMidiFile(file);
  auto length = bytes ? MidiLength(*bytes) : std::nullopt;
  if (!length) return false;
  lengths_[file] = *length;
  return true;
}

bool HeadlessSequencer::Play(Program& program, const std::string& file, std::int32_t from,
                             std::int32_t to, std::uint32_t tune) {
  log.push_back(from == 0 && to == 0
                    ? "play " + file + " from 0"
                    : "play " + file + " from " + std::to_string(from) + " to " + std::to_string(to));
  auto it = lengths_.find(file);
  if (it == lengths_.end()) return false;
  double end = to > from ? to / 1000.0 : it->second;
  double seconds = std::max(0.0, end - from / 1000.0);
  program.Post(program.Now() + seconds, [tune](Program& p) { MidiNotify(p, tune); });
  return true;
}

void HeadlessSequencer::Close(const std::string& file) {
  log.push_back("close " + file);
  lengths_.erase(file);
}

bool HeadlessPlayers::Load(Program&, ControlId player, const std::string& file) {
  MediaFileInfo media = ReadMediaFile(file);
  if (media.kind == MediaKind::None) return false;
  State& s = players_[{player.form, player.index}];
  s.length = media.length.value_or(kUnknownLength);
  s.playing = false;
  s.round = ++lastRound_;
  return true;
}

void HeadlessPlayers::Unload(Program&, ControlId player) {
  players_.erase({player.form, player.index});
}

void HeadlessPlayers::ScheduleEnd(Program& program, ControlId player, State& s, int playCount) {
  std::uint64_t round = s.round = ++lastRound_;
  double end = s.end = s.started + s.length * std::max(playCount, 1);
  program.Post(end, [this, player, round](Program& p) {
    auto it = players_.find({player.form, player.index});
    if (it == players_.end() || it->second.round != round) return;
    it->second.playing = false;
    p.surface().SetMedia(player, Prop::PlayState, kPlayStopped);
  });
}

void HeadlessPlayers::Play(Program& program, ControlId player, int playCount) {
  auto it = players_.find({player.form, player.index});
  if (it == players_.end()) return;
  it->second.started = program.Now();
  it->second.playing = true;
  ScheduleEnd(program, player, it->second, playCount);
}

void HeadlessPlayers::Stop(Program&, ControlId player) {
  auto it = players_.find({player.form, player.index});
  if (it == players_.end()) return;
  it->second.playing = false;
  it->second.round = ++lastRound_;
}

std::optional<double> HeadlessPlayers::SecondsLeft(Program& program, ControlId player) {
  auto it = players_.find({player.form, player.index});
  if (it == players_.end() || !it->second.playing) return std::nullopt;
  return std::max(0.0, it->second.end - program.Now());
}

void HeadlessPlayers::SetPlayCount(Program& program, ControlId player, int playCount) {
  // A new count applies to the play under way, as it does on the desktop.
  auto it = players_.find({player.form, player.index});
  if (it != players_.end() && it->second.playing) ScheduleEnd(program, player, it->second, playCount);
}

}  // namespace fw
