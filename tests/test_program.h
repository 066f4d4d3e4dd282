#pragma once
// A headless program on a virtual clock, for tests.
#include <unistd.h>

#include <filesystem>
#include <span>
#include <string>

#include "bindings/headless/headless_services.h"
#include "forms/program.h"

namespace fw::testing {

// A fresh temporary folder, removed with the object.
struct TempDir {
  std::filesystem::path path;
  TempDir() {
    path = std::filesystem::temp_directory_path() /
           ("fwtest-" + std::to_string(::getpid()) + "-" + std::to_string(counter()++));
    std::filesystem::create_directories(path);
  }
  ~TempDir() {
    std::error_code ec;
    std::filesystem::remove_all(path, ec);
  }
  std::string str() const { return path.string(); }
  static int& counter() {
    static int n = 0;
    return n;
  }
};

struct TestProgram {
  TempDir dir;
  HeadlessPlatform platform;
  Program program;

  explicit TestProgram(std::span<const FormDef> forms)
      : program(platform.services(), AppInfo{dir.str(), "fablewright", dir.str(), dir.str()}, forms) {}

  FormSurface& surface() { return program.surface(); }
  double now() { return platform.clock.Now(); }
};

}  // namespace fw::testing
