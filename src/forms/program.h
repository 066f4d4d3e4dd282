#pragma once
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <typeindex>
#include <unordered_map>
#include <utility>
#include <vector>

#include "forms/failure.h"
#include "forms/form_table.h"
#include "forms/services.h"
#include "forms/surface.h"

namespace fw {

// Where the running executable stands, as App.Path and App.EXEName report it.
struct AppInfo {
  AppInfo(std::string path_, std::string exeName_, std::string userDir_, std::string currentDir_,
          std::string exe_ = {}, std::vector<std::string> ownFiles_ = {})
      : path(std::move(path_)),
        exeName(std::move(exeName_)),
        userDir(std::move(userDir_)),
        currentDir(std::move(currentDir_)),
        exe(std::move(exe_)),
        ownFiles(std::move(ownFiles_)) {}
  std::string path;     // the executable's folder, Windows-1252, no trailing separator
  std::string exeName;  // its file name without folder and extension
  std::string userDir;  // host path of the per-user folder (the Windows directory)
  std::string currentDir;  // host path of the current folder at start
  std::string exe;         // host path of the running executable itself, "" when unknown
  // Host paths of the program's own files that a copy of the executable
  // needs beside it to run (a module it loads from its own folder), in order.
  std::vector<std::string> ownFiles;
};

// The title of a message box that is given none.
inline constexpr std::string_view kAppTitle = "Fablewright 2004";

// Thrown by End: unwinds every running handler up to the binding.
struct EndSignal {};

// Runs one statement of a skip-on-error handler: a failure drops the
// statement whole and the handler goes on with the next one.
template <class Statement>
void Skip(Statement&& statement) {
  try {
    statement();
  } catch (const Failure&) {
  }
}

// One running program: its forms and controls, its services, and the module
// state of every subsystem. Nothing lives outside it, so tests can run many
// programs side by side in one process.
class Program {
 public:
  Program(Services services, AppInfo app, std::span<const FormDef> forms);
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  FormSurface& surface() { return surface_; }
  const Services& services() const { return services_; }

  // -- App.
  const std::string& AppPath() const { return app_.path; }
  const std::string& AppEXEName() const { return app_.exeName; }
  const AppInfo& App() const { return app_; }
  // The host path of the per-user folder that stands for the Windows directory.
  const std::string& UserDir() const { return app_.userDir; }

  // -- Lifecycle.
  // A process start: the start-up form loads (and its Form_Load leads on).
  void Start();
  bool Ended() const { return ended_; }
  // Whether the program has finished, the one rule every binding asks: End
  // ran, or no form is left loaded since the start (the last window was closed).
  bool Over() const;
  [[noreturn]] void End();
  // Runs a user event from a binding: End and a failure that no handler
  // caught stop here instead of going further.
  void RunEvent(const std::function<void()>& event);
  // A failure the game goes on after without a box: the window stays silent,
  // and a binding that has a place for such a line (the terminal) takes them.
  void Notice(std::string text) { notices_.push_back(std::move(text)); }
  std::vector<std::string> TakeNotices() { return std::exchange(notices_, {}); }

  // -- Blocking dialogs.
  // A message box; a box without a title shows the application's title.
  int MsgBox(std::string_view prompt, int style = 0, std::string_view title = "");
  // The file dialogs: true when the user answered, false when cancelled.
  bool ShowOpen(ControlId dialog);
  bool ShowSave(ControlId dialog);
  // The next showing of that dialog gets path (Windows-1252) without being
  // shown: a file named on the command line, as the user would pick it.
  void AnswerNextFileDialog(ControlId dialog, std::string path) { nextFileAnswer_ = {dialog, std::move(path)}; }

  // -- The event loop.
  double Timer() { return services_.clock->Now(); }
  double Now() { return Timer(); }
  void DoEvents();
  void Pause(double seconds);
  // The same, cut short at the first look after cut() gives true.
  void Pause(double seconds, const std::function<bool()>& cut);
  void PressAnimation(ControlId control);
  // Runs the callback on this program's thread once the clock reaches due.
  void Post(double due, std::function<void(Program&)> callback);
  double NextDue() const;
  // When an event loop that sleeps must next run RunDue: the next posted
  // event, or the next tick of a timer that may still change something.
  // Infinity when the program is idle until the user or a wake does something.
  double NextWake() const;
  // Called when a sleeping event loop must look again because End ran. The
  // program has one thread: every post comes from a handler on it.
  void SetWake(std::function<void()> wake) { wake_ = std::move(wake); }
  // Runs every timer tick and posted event that is due now, earliest first.
  void RunDue();

  // -- Platform operations; the failing ones throw Failure.
  float Rnd() { return services_.random->Rnd(); }
  void Randomize() { services_.random->Randomize(Timer()); }
  Picture LoadPicture(std::string_view path);
  // Starts the program argv[0] (a program path) with the arguments after it,
  // in the current folder; no part is ever split at blanks or quotes.
  void Shell(const std::vector<std::string>& argv, int windowStyle);
  void ShellExecute(std::string_view target) { services_.processes->Open(target); }
  void FileCopy(std::string_view from, std::string_view to);
  void MkDir(std::string_view path);
  void Kill(std::string_view path);
  void ChDir(std::string_view path);
  std::string GetWindowsDir() const;
  // The host path a program path names: "/" for "\", relative to the current folder.
  std::string HostFile(std::string_view path) const;
  const std::string& CurrentDir() const { return currentDir_; }
  // The host path of an existing media file, "" when there is none.
  std::string ResolveMediaFile(std::string_view path) const;

  // -- Module fields: the state a subsystem keeps for the whole run, one
  // object of each type, made at its first use. The subsystem names the
  // type; the program holds it without knowing it.
  template <class State>
  State& Module() {
    std::shared_ptr<void>& slot = modules_[std::type_index(typeid(State))];
    if (!slot) slot = std::make_shared<State>();
    return *static_cast<State*>(slot.get());
  }

 private:
  struct Posted {
    double due;
    long seq;
    std::function<void(Program&)> callback;
  };
  bool ShowFileDialog(ControlId dialog, bool save);

  Services services_;
  AppInfo app_;
  FormSurface surface_;
  std::string currentDir_;
  std::vector<Posted> posted_;
  std::function<void()> wake_;
  long postSeq_ = 0;
  bool started_ = false;
  bool ended_ = false;
  std::vector<std::string> notices_;
  std::unordered_map<std::type_index, std::shared_ptr<void>> modules_;
  std::optional<std::pair<ControlId, std::string>> nextFileAnswer_;
};

// Makes the program a binding runs. The binding brings the services that are
// its own (how it waits, asks and plays; a headless run brings every one) and
// leaves the others null; the maker adds the rest, where the program stands
// and its forms. One maker serves every binding.
using ProgramMaker = std::function<std::unique_ptr<Program>(Services own)>;

}  // namespace fw
