#pragma once
// What the benchmarks share: a scratch folder of their own, and the plain
// whole-file read that the readers of quests and media are measured against.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <string>

namespace fw::bench {

// A folder of this run under the system's temporary folder, made when missing.
inline std::filesystem::path ScratchFolder(const std::string& tag) {
  auto dir = std::filesystem::temp_directory_path() / ("fwbench-" + tag + "-" + std::to_string(::getpid()));
  std::filesystem::create_directories(dir);
  return dir;
}

// The reference: open, one read of the whole file into memory, close.
inline void ReadWholeFile(const std::string& path) {
  int fd = ::open(path.c_str(), O_RDONLY);
  std::string bytes(std::filesystem::file_size(path), '\0');
  benchmark::DoNotOptimize(::read(fd, bytes.data(), bytes.size()));
  ::close(fd);
  benchmark::DoNotOptimize(bytes);
}

}  // namespace fw::bench
