// Load Saved Game on a save of N key items, against a plain read of the same
// file in the same run: the load reads the file once and each item once, so
// its time grows in step with the items (a list holds 32,767 at most, so
// 40,000 reads 32,767 of them).
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "bench_files.h"
#include "bindings/headless/headless_services.h"
#include "forms/program.h"
#include "play/game_state.h"
#include "play/saved_game.h"
#include "shell/forms.h"
#include "store/scrambler.h"

namespace {

namespace fs = std::filesystem;

// A save of n items beside a small quest, made once per size.
const std::string& SaveFile(int items) {
  static std::map<int, std::string> made;
  if (auto it = made.find(items); it != made.end()) return it->second;
  fs::path dir = fw::bench::ScratchFolder("save");
  std::ofstream(dir / "quest.fbw", std::ios::binary) << "[1]\r\nPage Text=A dark cave.\r\n";
  std::string path = (dir / ("game" + std::to_string(items) + ".sav")).string();
  std::ofstream out(path, std::ios::binary);
  out << "[saved game]\r\nroom=" << fw::Encode("A dark cave.") << "\r\noption 1=" << fw::Encode("Go north")
      << "\r\npage=" << fw::Encode("1") << "\r\nPoo=" << fw::Encode("12") << "\r\nHowMuchInList=" << items
      << "\r\n[CharacterData]\r\nCharName=" << fw::Encode("Thera") << "\r\nCharHp=" << fw::Encode("33")
      << "\r\nCharAtk=" << fw::Encode("15") << "\r\nCharDef=" << fw::Encode("14") << "\r\nCharLevel="
      << fw::Encode("1") << "\r\n[List Data]\r\n";
  for (int i = 0; i < items; ++i) out << i << "=Item " << i << "\r\n";
  return made[items] = path;
}

void BM_LoadGameReference_ReadFile(benchmark::State& state) {
  const std::string& path = SaveFile(static_cast<int>(state.range(0)));
  for (auto _ : state) fw::bench::ReadWholeFile(path);
}

// The whole command: the page, the character written into the quest, the
// items added to the list, the transcript entry.
void BM_LoadGame(benchmark::State& state) {
  const std::string& path = SaveFile(static_cast<int>(state.range(0)));
  std::string folder = fs::path(path).parent_path().string();
  fw::HeadlessPlatform platform;
  fw::Program p(platform.services(), fw::AppInfo{folder, "fablewright", folder, folder}, fw::AllForms());
  fw::GameState g(p);
  g.questfil.SetCaption(folder + "/quest.fbw");
  for (auto _ : state) {
    state.PauseTiming();
    g.List1.Clear();
    g.Text1.SetText("");
    platform.dialogs.QueueFile("FrmGame.file", path);
    state.ResumeTiming();
    fw::frmgame::mnuload_Click(p);
  }
  if (g.List1.ListCount() != std::min<int>(static_cast<int>(state.range(0)), 32767))
    state.SkipWithError("the load did not bring every item");
}

}  // namespace

BENCHMARK(BM_LoadGameReference_ReadFile)->Arg(100)->Arg(10000)->Arg(20000)->Arg(40000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadGame)->Arg(100)->Arg(10000)->Arg(20000)->Arg(40000)->Unit(benchmark::kMillisecond);
