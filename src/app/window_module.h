#pragma once
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "forms/program.h"

namespace fw {

// The game window lives in a module of its own, loaded only when a window
// opens, so that the terminal player, a script or a key read starts without
// the window toolkit.
inline constexpr const char* kWindowModuleName = "fablewright-window.so";

// True when a window can be shown: a display, or a platform chosen.
bool DisplayAvailable();

// The places the window module is looked for, in order: beside the
// executable, in lib/ beside it, then where an install puts it.
std::vector<std::string> WindowModulePlaces(const std::string& exeDir);

// The first of those places that holds the module, "" when none does.
std::string FindWindowModule(const std::string& exeDir);

// A command line's own first step, run as one event once the game window is
// up: opening the quest it names, or the editor.
using Opening = std::function<void(Program&)>;

// Loads the module at path and runs the program, made by make, in its
// windows until it ends; gives the exit code. Gives nothing, and says why
// on err, when the module cannot be loaded.
std::optional<int> RunWindows(const std::string& path, const ProgramMaker& make, int argc, char** argv,
                              const Opening& opening, std::ostream& err);

}  // namespace fw
