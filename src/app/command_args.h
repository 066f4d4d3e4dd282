#pragma once
#include <functional>
#include <string>
#include <vector>

#include "app/assembly.h"
#include "bindings/headless/script_runner.h"

namespace fw {

// The parts of the command line that every build of the program reads the
// same way, the desktop's and the browser's script runner alike.

// Reads --app-dir and --home into the launch; gives false on a stray word.
bool ReadFolders(const std::vector<std::string>& args, std::size_t& i, Launch& launch);

// The per-user folder: the one given, made when missing, or the default;
// false, said why, when what is given is no folder.
bool MakeUserDir(Launch& launch);

// The line for an argument that is not taken: an option without its value
// is named as such.
void RefuseArgument(const std::vector<std::string>& args, std::size_t i, const std::string& job);

// Runs a script on a program put together for the launch; gives the exit code.
using ScriptRun = std::function<int(const Launch& launch, const std::string& file, const ScriptOptions& options)>;

// `script FILE [--app-dir DIR] [--home DIR] [--transcript]`, the words after
// "script": reads them into the launch, then runs.
int ScriptCommand(const std::vector<std::string>& args, Launch launch, const ScriptRun& run);

}  // namespace fw
