#pragma once
#include "forms/program.h"

namespace fw {

// True when a window can be shown: a display, or a platform chosen.
bool DisplayAvailable();

// Runs the program, made by make, in its windows until it ends. Gives the
// exit code.
int RunDesktop(const ProgramMaker& make, int argc, char** argv);

}  // namespace fw
