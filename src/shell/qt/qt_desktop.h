#pragma once
#include <string>

namespace fw {

struct DesktopOptions {
  std::string appDir, exeName, home;  // as for the other bindings
};

// True when a window can be shown: a display, or a platform chosen.
bool DisplayAvailable();

// Runs the program in its windows until it ends. Gives the exit code.
int RunDesktop(const DesktopOptions& options, int argc, char** argv);

}  // namespace fw
