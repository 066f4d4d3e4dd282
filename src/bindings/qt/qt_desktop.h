#pragma once
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

// Runs the program, made by make, in its windows until it ends. A quest (a
// UTF-8 path) opens once the game window is up, as Load Quest opens one.
// Gives the exit code.
int RunDesktop(const ProgramMaker& make, int argc, char** argv, const std::string& quest = {});

// The same inside the application object that is running already.
int RunDesktopWindows(const ProgramMaker& make, const std::string& quest = {});

}  // namespace fw
