#pragma once
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "forms/services.h"
#include "media/headless_media.h"
#include "platform/disk_files.h"
#include "platform/draw_random.h"

namespace fw {

// A run cannot go on: an unanswered question or dialog, or a script mistake.
// It passes every handler (no skip-on-error step catches it) up to the runner.
class ScriptError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A clock that moves only when told: a run gives the same result every time.
class VirtualClock : public Clock {
 public:
  static constexpr double kStart = 10 * 3600;  // 10:00:00 in the morning
  double Now() override { return now_; }
  void Set(double t) { now_ = t; }

 private:
  double now_ = kStart;
};

// DoEvents in a headless run: a millisecond of virtual time passes.
class VirtualPump : public EventPump {
 public:
  explicit VirtualPump(VirtualClock& clock) : clock_(clock) {}
  void Pump(Program&) override { clock_.Set(clock_.Now() + 0.001); }

 private:
  VirtualClock& clock_;
};

// One message box as the program showed it.
struct ShownBox {
  std::string prompt, title;
  int style = 0;
  int answer = 1;
};

// Message boxes and file dialogs answered from queues a script fills.
class QueuedDialogs : public Dialogs {
 public:
  int MsgBox(std::string_view prompt, int style, std::string_view title) override;
  std::optional<std::string> FileDialog(const FileDialogRequest& request) override;

  void QueueAnswer(int answer) { answers_.push_back(answer); }
  // path nullopt: the user cancels.
  void QueueFile(const std::string& dialog, std::optional<std::string> path) {
    files_[dialog].push_back(std::move(path));
  }
  std::deque<ShownBox>& unchecked() { return unchecked_; }
  // Told of every box as it shows, for a transcript.
  std::function<void(const ShownBox&)> onBox;

 private:
  std::deque<int> answers_;
  std::map<std::string, std::deque<std::optional<std::string>>> files_;
  std::deque<ShownBox> unchecked_;
};

// Starts nothing: records what would have started. A program counts as found
// when the desktop would find it (FindProgram).
class RecordingProcesses : public Processes {
 public:
  bool Start(const std::vector<std::string>& argv, int windowStyle, const std::string& folder) override;
  void Open(std::string_view target) override { opened.emplace_back(target); }
  std::vector<std::vector<std::string>> started;  // the program and arguments of each start
  std::vector<std::string> opened;
  std::vector<std::string> folders;  // the folder each started command was started in
  std::vector<int> windowStyles;  // the window style each started command was given
};

// Everything a headless program needs, owned in one place.
struct HeadlessPlatform {
  VirtualClock clock;
  VirtualPump pump{clock};
  QueuedDialogs dialogs;
  RecordingProcesses processes;
  DiskFiles files;
  DrawRandom random;
  HeadlessSequencer sequencer;
  HeadlessPlayers players;
  Services services() {
    return {&clock, &pump, &dialogs, &processes, &files, &random, &sequencer, &players, nullptr};
  }
};

}  // namespace fw
