// Making a game folder with its runtime, against its reference: copying the
// same files with std::filesystem, which is all a folder of copies has to
// cost. Working the list out (ldd of the program and of each plugin) is
// measured apart, since a run pays it once. These copy some 130 MB an
// iteration: run them by name, not in the smoke run.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <memory>

#include "bench_files.h"
#include "bindings/headless/headless_services.h"
#include "forms/controls.h"
#include "forms/program.h"
#include "forms/user_actions.h"
#include "platform/linked_runtime.h"
#include "shell/forms.h"

namespace {

namespace fs = std::filesystem;

// This benchmark's own executable links what the program links.
std::string Self() { return fs::read_symlink("/proc/self/exe").string(); }

// The reference: each runtime file copied where the game folder keeps it.
void BM_PackagerCopyRuntimeFiles(benchmark::State& state) {
  fw::LinkedRuntime runtime(Self(), {});
  std::vector<fw::RuntimeFile> files = runtime.Files();
  fs::path dir = fw::bench::ScratchFolder("runtime-copy");
  for (auto _ : state) {
    fs::path game = dir / "Game";
    for (const fw::RuntimeFile& f : files) {
      fs::create_directories((game / f.to).parent_path());
      fs::copy_file(f.from, game / f.to, fs::copy_options::overwrite_existing);
    }
    state.PauseTiming();
    fs::remove_all(game);
    state.ResumeTiming();
  }
  fs::remove_all(dir);
}
BENCHMARK(BM_PackagerCopyRuntimeFiles)->Unit(benchmark::kMillisecond)->Iterations(5);

// Compile in the packager's window with Check1 set: the executable, the
// quest, game.dat and the runtime, with the run paths set by patchelf.
void BM_PackagerCompileWithRuntime(benchmark::State& state) {
  fs::path dir = fw::bench::ScratchFolder("compile");
  std::ofstream(dir / "quest.fbw") << "[Story Info]\r\nTitle=T\r\n";
  fw::HeadlessPlatform platform;
  fw::LinkedRuntime runtime(Self(), {});
  runtime.Files();  // worked out once a run, as the program does
  fw::Services services = platform.services();
  services.runtime = &runtime;
  fw::Program p(services, fw::AppInfo{dir.string(), "bench", dir.string(), dir.string(), Self()}, fw::AllForms());
  fw::FormSurface& s = p.surface();
  s.SetFileName(s.Id("createquest", "questfile"), dir.string() + "/quest.fbw");
  fw::FormHandle(s, "FrmCompile").Show();
  fw::TextBox(s, "FrmCompile", "Text1").SetText("Game");
  fw::DirListBox(s, "FrmCompile", "Dir1").SetPath(dir.string());
  for (auto _ : state) {
    platform.dialogs.QueueAnswer(7);
    if (!fw::Act(p, s.Id("FrmCompile", "Command1"), fw::UserAction::Click).empty()) state.SkipWithError("Compile refused");
    state.PauseTiming();
    fs::remove_all(dir / "Game");
    state.ResumeTiming();
  }
  fs::remove_all(dir);
}
BENCHMARK(BM_PackagerCompileWithRuntime)->Unit(benchmark::kMillisecond)->Iterations(5);

// Working the list out: ldd of the executable and of each plugin.
void BM_PackagerWorkOutRuntime(benchmark::State& state) {
  for (auto _ : state) {
    fw::LinkedRuntime runtime(Self(), {});
    benchmark::DoNotOptimize(runtime.Files());
  }
}
BENCHMARK(BM_PackagerWorkOutRuntime)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace
