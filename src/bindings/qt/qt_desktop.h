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

 private:
  QWidget* Parent() const { return parent_ ? parent_() : nullptr; }
  std::function<QWidget*()> parent_;
};

// Keeps Qt's own warnings and debug notes off the terminal: a player sees
// none of them.
void QuietQtMessages();

// A command line's own first step, run as one event once the game window is
// up: opening the quest it names, or the editor.
using Opening = std::function<void(Program&)>;

// Runs the program, made by make, in its windows until it ends. Gives the
// exit code.
int RunDesktop(const ProgramMaker& make, int argc, char** argv, const Opening& opening = {});

// The same inside the application object that is running already.
int RunDesktopWindows(const ProgramMaker& make, const Opening& opening = {});

}  // namespace fw
