#pragma once
// What the benchmarks share: a scratch folder of their own, and the plain
// whole-file read that the readers of quests and media are measured against.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
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

// A quest of n pages in a temporary folder, made once per size, with
// the keys a real page has.
inline const std::string& QuestFile(int pages) {
  static std::map<int, std::string> made;
  auto it = made.find(pages);
  if (it != made.end()) return it->second;
  std::filesystem::path dir = ScratchFolder("quest");
  std::string path = (dir / ("quest" + std::to_string(pages) + ".fbw")).string();
  std::ofstream out(path, std::ios::binary);
  out << "[Story Info]\r\nTitle=Bench\r\nAuthor=Bench\r\nVersion=1\r\n\r\n[Quest Data]\r\nNumber Of Pages="
      << pages << "\r\n\r\n";
  const char* names[] = {"One", "Two", "Three", "Four"};
  for (int p = 1; p <= pages; ++p) {
    out << "[" << p << "]\r\nLocation=Room " << p << "\r\nPage Text=You stand in room " << p
        << ". Passages lead off in several directions, and the air smells of dust and old candles.\r\n";
    for (int o = 0; o < 4; ++o) {
      out << "Option " << names[o] << "=Take passage " << o + 1 << "\r\nOption " << names[o] << " Score=+"
          << o << "\r\nOption " << names[o] << " Destination Page=" << (p % pages) + 1 << "\r\nKey Item"
          << o + 1 << "=\r\nAdd" << o + 1 << "=0\r\nRequired" << o + 1 << "=0\r\n";
    }
    out << "Image=room.jpg\r\nMusic=room.mid\r\nMp3=\r\nMovie=\r\nAutoRepeat=0\r\nHealChar=0\r\nBattle=0\r\n\r\n";
  }
  return made[pages] = path;
}

}  // namespace fw::bench
