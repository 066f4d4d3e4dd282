#pragma once
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "forms/services.h"
#include "forms/surface.h"

namespace fw {

// The MIDI voice of a headless run: it reads each file to learn the tune's
// real length and delivers the end of the tune when the virtual clock passes
// it. It keeps a log of its commands for tests.
class HeadlessSequencer : public Sequencer {
 public:
  bool Open(const std::string& file) override;
  bool Play(Program& program, const std::string& file, std::int32_t from, std::int32_t to,
            std::uint32_t tune) override;
  void Close(const std::string& file) override;

  std::vector<std::string> log;  // "open F", "play F from 0", "play F from A to B", "close F"

 private:
  std::map<std::string, double> lengths_;  // open files and their lengths in seconds
};

// The media players of a headless run: a WAV, MP3 or AVI file that exists
// loads and plays for its real length (a fixed 3 seconds when its header
// does not tell); anything else does not load.
class HeadlessPlayers : public MediaPlayers {
 public:
  static constexpr double kUnknownLength = 3.0;

  bool Load(Program& program, ControlId player, const std::string& file) override;
  void Unload(Program& program, ControlId player) override;
  void Play(Program& program, ControlId player, int playCount) override;
  void Stop(Program& program, ControlId player) override;
  void SetPlayCount(Program& program, ControlId player, int playCount) override;
  std::optional<double> SecondsLeft(Program& program, ControlId player) override;

 private:
  struct State {
    double length = 0;
    double started = 0;
    double end = 0;  // when the last round ends
    bool playing = false;
    std::uint64_t round = 0;  // renewed by every change: a scheduled end of an older one is stale
  };
  void ScheduleEnd(Program& program, ControlId player, State& state, int playCount);

  std::map<std::pair<int, int>, State> players_;
  // Rounds are numbered across loads: a file loaded afresh must not take the
  // number of an end still posted for the file it replaced.
  std::uint64_t lastRound_ = 0;
};

}  // namespace fw
