#pragma once
#include <functional>
#include <memory>
#include <string_view>

#include "forms/program.h"

class QMessageBox;

namespace fw {

// A message box of the program (style 0, 4, 16 or 64) as the desktop draws
// it, ready to run.
std::unique_ptr<QMessageBox> MakeMessageBox(std::string_view prompt, int style, std::string_view title);

// True when a window can be shown: a display, or a platform chosen.
bool DisplayAvailable();

// Runs the program, made by make, in its windows until it ends. Gives the
// exit code. `opening`, when given, runs as one event right after the start:
// a command line's own first step, such as opening the editor.
int RunDesktop(const ProgramMaker& make, int argc, char** argv,
               const std::function<void(Program&)>& opening = {});

}  // namespace fw
