// The profile store against plain file reads and writes of the same quest,
// and against a full parse by Debian's inih, in one run. Quests are made up
// at N pages, each with the keys a real page has.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <ini.h>
#include <sys/mman.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "bench_files.h"
#include "store/profile.h"

namespace {

namespace fs = std::filesystem;

using fw::bench::QuestFile;

void BM_ReadFile(benchmark::State& state) {
  const std::string& path = QuestFile(static_cast<int>(state.range(0)));
  for (auto _ : state) fw::bench::ReadWholeFile(path);
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(fs::file_size(path)));
}

// A disk that knows no file identities, so that every read opens the file
// afresh: the plain read that served reads are measured against.
struct PlainDisk : fw::RealStoreDisk {
  int Identify(const std::string&, fw::FileIdentity&) override { return ENOSYS; }
};

void ReadPage(benchmark::State& state, bool last, bool served) {
  int pages = static_cast<int>(state.range(0));
  const std::string& path = QuestFile(pages);
  std::shared_ptr<fw::StoreDisk> disk = served ? std::make_shared<fw::RealStoreDisk>() : std::make_shared<PlainDisk>();
  fw::QuestStore store(fs::temp_directory_path().string(), disk);
  std::string page = std::to_string(last ? pages : 1);
  for (auto _ : state) benchmark::DoNotOptimize(store.ReadINI(path, page, "Battle"));
  if (served) state.counters["image_per_file_byte"] = double(store.ImageMemoryBytes()) / double(fs::file_size(path));
}

void BM_ReadINI_FirstPage(benchmark::State& state) { ReadPage(state, false, false); }
void BM_ReadINI_LastPage(benchmark::State& state) { ReadPage(state, true, false); }
// The same read served from the file's image, the file unchanged since.
void BM_ReadINI_LastPage_Served(benchmark::State& state) { ReadPage(state, true, true); }

// The other way to stop early, weighed against the store's block reads: the
// file mapped into memory and searched where it lies. The store does not map
// files, since a file cut short by another program while mapped kills the
// reader with SIGBUS.
void BM_MappedFind_LastPage(benchmark::State& state) {
  int pages = static_cast<int>(state.range(0));
  const std::string& path = QuestFile(pages);
  std::string page = std::to_string(pages);
  for (auto _ : state) {
    int fd = ::open(path.c_str(), O_RDONLY);
    std::size_t size = fs::file_size(path);
    void* map = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, fd, 0);
    std::string_view text(static_cast<const char*>(map), size);
    benchmark::DoNotOptimize(std::string(fw::FindProfileValue(text, page, "Battle")));
    ::munmap(map, size);
    ::close(fd);
  }
}

void BM_WriteINI(benchmark::State& state) {
  int pages = static_cast<int>(state.range(0));
  const std::string& path = QuestFile(pages);
  fw::QuestStore store(fs::temp_directory_path().string());
  std::string page = std::to_string(pages);
  int i = 0;
  for (auto _ : state) store.WriteINI(path, page, "Location", "Room " + std::to_string(i++ % 2));
}

void BM_WriteFile(benchmark::State& state) {
  const std::string& path = QuestFile(static_cast<int>(state.range(0)));
  std::ifstream in(path, std::ios::binary);
  std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  std::string copy = path + ".copy";
  for (auto _ : state) {
    int fd = ::open(copy.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    benchmark::DoNotOptimize(::write(fd, text.data(), text.size()));
    ::fsync(fd);
    ::close(fd);
  }
  fs::remove(copy);
}

void BM_InihParse(benchmark::State& state) {
  const std::string& path = QuestFile(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    int values = 0;
    ini_parse(path.c_str(), [](void* user, const char*, const char*, const char*) {
      ++*static_cast<int*>(user);
      return 1;
    }, &values);
    benchmark::DoNotOptimize(values);
  }
}

}  // namespace

BENCHMARK(BM_ReadFile)->Arg(100)->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(BM_ReadINI_FirstPage)->Arg(100)->Arg(1000)->Arg(10000);
BENCHMARK(BM_ReadINI_LastPage)->Arg(100)->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(BM_ReadINI_LastPage_Served)->Arg(100)->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(BM_MappedFind_LastPage)->Arg(100)->Arg(1000)->Arg(10000);
BENCHMARK(BM_WriteINI)->Arg(100)->Arg(1000)->Arg(10000);
BENCHMARK(BM_WriteFile)->Arg(100)->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(BM_InihParse)->Arg(100)->Arg(1000)->Arg(10000);

BENCHMARK_MAIN();
