// The script runner of the web build, run by node over the host's own files:
// `node --no-experimental-fetch fablewright-script.js script FILE ...` takes
// the words of `fablewright script` and prints what it prints.
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "app/command_args.h"
#include "app/web_assembly.h"

int main(int argc, char** argv) {
  std::vector<std::string> args(argv + 1, argv + argc);
  if (args.empty() || args[0] != "script") {
    std::cerr << "Usage: fablewright-script script FILE [--app-dir DIR] [--home DIR] [--transcript]\n";
    return 2;
  }
  fw::Launch launch;
  launch.appDir = std::filesystem::current_path().string();
  launch.exeName = "fablewright";
  args.erase(args.begin());
  return fw::ScriptCommand(args, launch, [](const fw::Launch& l, const std::string& file, const fw::ScriptOptions& options) {
    fw::WebBuildAssembly assembly(l);
    return fw::RunScript(file, options, assembly.Maker(), std::cout, std::cerr);
  });
}
