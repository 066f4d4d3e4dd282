#pragma once
// What the fuzz targets that drive the play engine share: a headless
// program over a scratch folder of their own, which is both its
// executable's and its per-user folder, made afresh for every input.
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>

#include "bindings/headless/headless_services.h"
#include "forms/program.h"
#include "shell/forms.h"

namespace fw::fuzz {

inline const std::filesystem::path& Scratch() {
  static const std::filesystem::path dir = [] {
    auto d = std::filesystem::temp_directory_path() / ("fwfuzz-" + std::to_string(::getpid()));
    std::filesystem::create_directories(d);
    return d;
  }();
  return dir;
}

// A file of the scratch folder holding exactly these bytes.
inline std::string PutFile(const std::string& name, std::string_view bytes) {
  std::string path = (Scratch() / name).string();
  std::ofstream(path, std::ios::binary | std::ios::trunc).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return path;
}

inline std::string FileText(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

inline std::string_view AsText(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

struct FuzzProgram {
  HeadlessPlatform platform;
  Program program{platform.services(),
                  AppInfo{Scratch().string(), "fablewright", Scratch().string(), Scratch().string()}, AllForms()};
};

}  // namespace fw::fuzz
