#pragma once
// A headless program on a virtual clock, for tests.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <string_view>

#include "bindings/headless/headless_services.h"
#include "forms/program.h"
#include "platform/graphviz_layout.h"

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

// The bytes a file holds; empty when it cannot be read.
inline std::string FileBytes(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// The headless services, with Graphviz linked in for the quest map.
inline Services WithGraphs(Services services, GraphLayout& graphs) {
  services.graphs = &graphs;
  return services;
}

// True in the sanitized suite (scripts/sanitize.sh sets FABLEWRIGHT_SMALL_CASES=1),
// whose instrumented build runs some fifty times slower: a test whose time
// grows with the size of its case (a fight fought thousands of times) takes
// a smaller case there, and the plain suite keeps the full one.
inline bool SmallCases() {
  const char* small = std::getenv("FABLEWRIGHT_SMALL_CASES");
  return small && std::string_view(small) == "1";
}

struct TestProgram {
  TempDir dir;
  HeadlessPlatform platform;
  GraphvizLayout graphs;
  Program program;

  explicit TestProgram(std::span<const FormDef> forms)
      : program(WithGraphs(platform.services(), graphs), AppInfo{dir.str(), "fablewright", dir.str(), dir.str()},
                forms) {}

  FormSurface& surface() { return program.surface(); }
  double now() { return platform.clock.Now(); }
};

}  // namespace fw::testing
