#pragma once
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "forms/program.h"

class QMessageBox;

namespace fw {

// A message box of the program (style 0, 4, 16 or 64) as the desktop draws
// it, ready to run.
std::unique_ptr<QMessageBox> MakeMessageBox(std::string_view prompt, int style, std::string_view title);

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
