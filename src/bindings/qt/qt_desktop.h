#pragma once
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "forms/program.h"

#include "forms/services.h"

class QMessageBox;
class QWidget;

namespace fw {

// A message box of the program (style 0, 4, 16 or 64) as the desktop draws
// it, ready to run, over the parent window when there is one.
std::unique_ptr<QMessageBox> MakeMessageBox(std::string_view prompt, int style, std::string_view title,
                                            QWidget* parent = nullptr);

// Message boxes and file dialogs as the desktop draws them, each over the
// window that parent gives at the moment it opens (the form the player is
// in), so that it never opens behind the game or on another screen.
class QtDialogs : public Dialogs {
 public:
  explicit QtDialogs(std::function<QWidget*()> parent = {}) : parent_(std::move(parent)) {}
  int MsgBox(std::string_view prompt, int style, std::string_view title) override;
  std::optional<std::string> FileDialog(const FileDialogRequest& r) override;
  // The next file dialog of that control ("FrmGame.questfile") gets this
  // path (Windows-1252) without being shown.
  void Preanswer(std::string dialog, std::string path);

 private:
  QWidget* Parent() const { return parent_ ? parent_() : nullptr; }
  std::function<QWidget*()> parent_;
  std::string preDialog_, prePath_;
};

// Keeps Qt's own warnings and debug notes off the terminal: a player sees
// none of them.
void QuietQtMessages();

// True when a window can be shown: a display, or a platform chosen.
bool DisplayAvailable();

// What a command line asks of the window at its start.
struct DesktopStart {
  std::string quest;  // a quest (UTF-8 path) to open once the game window is up, as Load Quest opens one
  std::function<void(Program&)> opening;  // a first step of its own, such as opening the editor
};

// Runs the program, made by make, in its windows until it ends. Gives the
// exit code.
int RunDesktop(const ProgramMaker& make, int argc, char** argv, const DesktopStart& start = {});

// The same inside the application object that is running already.
int RunDesktopWindows(const ProgramMaker& make, const DesktopStart& start = {});

}  // namespace fw
