// Finding the media a page names: a name that is there against one that is
// missing, which costs a listing of the quest's folder, and nothing above it.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "bench_files.h"
#include "bindings/headless/headless_services.h"
#include "forms/program.h"
#include "play/quest_paths.h"
#include "shell/forms.h"

namespace {

namespace fs = std::filesystem;

// A quest folder of 100 media files, with a program whose current folder it is.
struct QuestFolderFixture {
  fs::path dir = fw::bench::ScratchFolder("paths");
  fw::HeadlessPlatform platform;
  std::unique_ptr<fw::Program> program;

  QuestFolderFixture() {
    for (int i = 0; i < 100; ++i) std::ofstream(dir / ("room" + std::to_string(i) + ".jpg")) << "x";
    program = std::make_unique<fw::Program>(platform.services(),
                                            fw::AppInfo{dir.string(), "fablewright", dir.string(), dir.string()},
                                            fw::AllForms());
  }
  ~QuestFolderFixture() {
    std::error_code ec;
    fs::remove_all(dir, ec);
  }
};

QuestFolderFixture& Fixture() {
  static QuestFolderFixture fixture;
  return fixture;
}

// The reference: one listing of the quest's folder.
void BM_ReadQuestFolder(benchmark::State& state) {
  QuestFolderFixture& f = Fixture();
  for (auto _ : state) benchmark::DoNotOptimize(fw::ReadFolder(f.dir));
}
BENCHMARK(BM_ReadQuestFolder);

void BM_FindQuestFile_Present(benchmark::State& state) {
  QuestFolderFixture& f = Fixture();
  for (auto _ : state) benchmark::DoNotOptimize(fw::FindQuestFile(*f.program, "room42.jpg", f.dir.string()));
}
BENCHMARK(BM_FindQuestFile_Present);

void BM_FindQuestFile_Missing(benchmark::State& state) {
  QuestFolderFixture& f = Fixture();
  for (auto _ : state)
    benchmark::DoNotOptimize(fw::FindQuestFile(*f.program, "C:\\Quests\\gone.jpg", f.dir.string()));
}
BENCHMARK(BM_FindQuestFile_Missing);

}  // namespace
