#pragma once
#include <functional>

#include "forms/program.h"

namespace fw {

// True when a window can be shown: a display, or a platform chosen.
bool DisplayAvailable();

// Runs the program, made by make, in its windows until it ends. Gives the
// exit code. `opening`, when given, runs as one event right after the start:
// a command line's own first step, such as opening the editor.
int RunDesktop(const ProgramMaker& make, int argc, char** argv,
               const std::function<void(Program&)>& opening = {});

}  // namespace fw
