#pragma once
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "forms/program.h"
#include "forms/services.h"
#include "media/headless_media.h"

namespace fw {

class WebWindows;

// The page's events as the engine takes them. A handler that waits (Pause,
// DoEvents, a message box, a file dialog) waits here, through Asyncify: the
// C++ stack stays where it is while the browser runs, and the player's
// events, the timers and the ends of tunes and sounds run nested, as they do
// in the desktop's window.
class PageEvents {
 public:
  void Attach(Program& program, WebWindows& windows) {
    program_ = &program;
    windows_ = &windows;
  }
  // Waits at most ms for the page's events and runs those that came; gives
  // an answer to a dialog when one came.
  std::optional<std::vector<std::string>> Run(double ms);
  // Runs the timers and posted events that are due, then tells the page what
  // the player can reach now.
  void Frame();
  // Waits for the answer to the dialog on screen, while timers run.
  std::vector<std::string> Answer();
  // How long the loop may sleep before something falls due, in ms.
  double Idle() const;

 private:
  Program* program_ = nullptr;
  WebWindows* windows_ = nullptr;
};

// DoEvents in the page: the browser paints and takes input, then the events
// that came run.
class PagePump : public EventPump {
 public:
  explicit PagePump(PageEvents& events) : events_(events) {}
  void Pump(Program&) override { events_.Run(0); }

 private:
  PageEvents& events_;
};

// Message boxes as modal dialogs in the page, and the file dialogs as its
// chooser over the game's own files and the player's folder.
class PageDialogs : public Dialogs {
 public:
  explicit PageDialogs(PageEvents& events) : events_(events) {}
  int MsgBox(std::string_view prompt, int style, std::string_view title) override;
  std::optional<std::string> FileDialog(const FileDialogRequest& request) override;

 private:
  PageEvents& events_;
};

// The browser starts no programs; a web address opens in a new tab.
class PageProcesses : public Processes {
 public:
  bool Start(const std::vector<std::string>&, int, const std::string&) override { return false; }
  void Open(std::string_view target) override;
};

// Sounds and movies through the page's <audio> and <video>. The timing is the
// headless players' (each file's own length), so a game runs as it does in
// every binding even where the browser cannot play a file; the page shows
// and sounds it alongside.
class PagePlayers : public HeadlessPlayers {
 public:
  bool Load(Program& program, ControlId player, const std::string& file) override;
  void Unload(Program& program, ControlId player) override;
  void Play(Program& program, ControlId player, int playCount) override;
  void Stop(Program& program, ControlId player) override;
};

// The MIDI voice: a tune plays through the pre-rendered audio file the game
// ships beside it (tune.oga for tune.mid), else in silence; its timing is
// the headless voice's, from the tune itself.
class PageSequencer : public HeadlessSequencer {
 public:
  bool Play(Program& program, const std::string& file, std::int32_t from, std::int32_t to,
            std::uint32_t tune) override;
  void Close(const std::string& file) override;
};

// A command line's own first step, run as one event once the page is up.
using PageOpening = std::function<void(Program&)>;

// Runs the program, made by make, in the page until it ends; gives the exit code.
int RunInPage(const ProgramMaker& make, const PageOpening& opening = {});

}  // namespace fw
