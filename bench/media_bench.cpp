// The length of a sound file as the headless players read it, against a
// plain read of the whole file, in one run. Files are WAVs of N KiB, and
// MP3s of N KiB, whose frames are counted through the whole file.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "bench_files.h"
#include "media/media_file.h"

namespace {

namespace fs = std::filesystem;

std::string Le(std::uint32_t v, int bytes) {
  std::string s;
  for (int i = 0; i < bytes; ++i) s += static_cast<char>((v >> (8 * i)) & 0xFF);
  return s;
}

// A mono 16-bit WAV of the given KiB of samples, with a LIST of tags before
// its format as many editors write, made once per size.
const std::string& WavFile(int kib) {
  static std::map<int, std::string> made;
  auto it = made.find(kib);
  if (it != made.end()) return it->second;
  fs::path dir = fw::bench::ScratchFolder("media");
  std::string path = (dir / ("track" + std::to_string(kib) + ".wav")).string();
  std::string info = "LIST" + Le(4 + 8 + 12, 4) + "INFOINAM" + Le(12, 4) + "Rain on tin";
  info += '\0';
  std::string data(static_cast<std::size_t>(kib) << 10, '\x40');
  std::string format = "fmt " + Le(16, 4) + Le(1, 2) + Le(1, 2) + Le(22050, 4) + Le(44100, 4) + Le(2, 2) + Le(16, 2);
  std::string body = "WAVE" + info + format + "data" + Le(data.size(), 4);
  std::ofstream(path, std::ios::binary) << "RIFF" << Le(body.size() + data.size(), 4) << body << data;
  return made[kib] = path;
}

// A CBR MP3 of about the given KiB: silent MPEG-1 layer III frames of 128 kbps
// at 48 kHz, 384 bytes each, made once per size.
const std::string& Mp3File(int kib) {
  static std::map<int, std::string> made;
  auto it = made.find(kib);
  if (it != made.end()) return it->second;
  fs::path dir = fw::bench::ScratchFolder("media");
  std::string path = (dir / ("track" + std::to_string(kib) + ".mp3")).string();
  std::string frame("\xFF\xFB\x94\xC0", 4);
  frame.resize(384, '\0');
  std::ofstream out(path, std::ios::binary);
  for (long bytes = 0; bytes < (static_cast<long>(kib) << 10); bytes += 384) out << frame;
  return made[kib] = path;
}

void BM_MediaReadWholeFile(benchmark::State& state) {
  const std::string& path = WavFile(static_cast<int>(state.range(0)));
  for (auto _ : state) fw::bench::ReadWholeFile(path);
}

void BM_MediaLength(benchmark::State& state) {
  const std::string& path = WavFile(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(fw::ReadMediaFile(path));
}

void BM_MediaReadWholeMp3(benchmark::State& state) {
  const std::string& path = Mp3File(static_cast<int>(state.range(0)));
  for (auto _ : state) fw::bench::ReadWholeFile(path);
}

void BM_MediaLengthMp3(benchmark::State& state) {
  const std::string& path = Mp3File(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(fw::ReadMediaFile(path));
}

}  // namespace

BENCHMARK(BM_MediaReadWholeFile)->Arg(100)->Arg(1000)->Arg(10000);
BENCHMARK(BM_MediaLength)->Arg(100)->Arg(1000)->Arg(10000);
BENCHMARK(BM_MediaReadWholeMp3)->Arg(100)->Arg(1000)->Arg(10000);
BENCHMARK(BM_MediaLengthMp3)->Arg(100)->Arg(1000)->Arg(10000);
