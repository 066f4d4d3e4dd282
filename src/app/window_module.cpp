#include "app/window_module.h"

#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <string_view>

namespace fw {
namespace {

// The module's entry points; see the window binding's module file.
using BuildFn = const char* (*)();
using RunFn = int (*)(const ProgramMaker*, int, char**, const Opening*);

}  // namespace

bool DisplayAvailable() {
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
    if (const char* v = std::getenv(name); v && *v) return true;
  return false;
}

std::vector<std::string> WindowModulePlaces(const std::string& exeDir) {
  namespace fs = std::filesystem;
  fs::path dir(exeDir);
  std::vector<std::string> places = {
      (dir / kWindowModuleName).string(),
      (dir / "lib" / kWindowModuleName).string(),
      // An install keeps the module in its library folder, found from the
      // executable's own folder wherever the install was made, and at the
      // folder the build was configured for, for a copy of the executable.
      (dir / FABLEWRIGHT_MODULE_DIR_FROM_BIN / kWindowModuleName).lexically_normal().string(),
      (fs::path(FABLEWRIGHT_MODULE_DIR) / kWindowModuleName).string(),
  };
  return places;
}

std::string FindWindowModule(const std::string& exeDir) {
  std::error_code ec;
  for (const std::string& place : WindowModulePlaces(exeDir))
    if (std::filesystem::is_regular_file(place, ec)) return place;
  return "";
}

std::optional<int> RunWindows(const std::string& path, const ProgramMaker& make, int argc, char** argv,
                              const Opening& opening, std::ostream& err) {
  if (path.empty()) {
    err << "fablewright: cannot open a window: " << kWindowModuleName
        << " is not beside the program, in lib/ beside it, nor in " << FABLEWRIGHT_MODULE_DIR << "\n";
    return std::nullopt;
  }
  // Never closed: the window toolkit stays loaded until the process ends.
  void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!module) {
    err << "fablewright: cannot open a window: " << dlerror() << "\n";
    return std::nullopt;
  }
  auto build = reinterpret_cast<BuildFn>(dlsym(module, "fablewright_window_build"));
  auto run = reinterpret_cast<RunFn>(dlsym(module, "fablewright_run_windows"));
  if (!build || !run || std::string_view(build()) != FABLEWRIGHT_VERSION) {
    err << "fablewright: cannot open a window: " << path << " is not the window module of fablewright "
        << FABLEWRIGHT_VERSION << "\n";
    return std::nullopt;
  }
  return run(&make, argc, argv, &opening);
}

}  // namespace fw
