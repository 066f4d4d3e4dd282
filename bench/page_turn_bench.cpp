// A page turn of the player on the generated quests: the Choose button's
// work (the option step and the page show), headless, with no media files
// beside the quest. Measured against BM_ReadINI_LastPage, one read of a key
// of the same page of the same quest.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "bench_files.h"
#include "bindings/headless/headless_services.h"
#include "forms/program.h"
#include "play/choose_option.h"
#include "play/game_state.h"
#include "play/start_quest.h"
#include "play/undo.h"
#include "shell/forms.h"

namespace {

// A headless player with the quest of n pages open, in a per-user folder of its own.
struct OpenGame {
  std::string home;
  fw::HeadlessPlatform platform;
  std::unique_ptr<fw::Program> program;

  explicit OpenGame(int pages) : home(fw::bench::ScratchFolder("play" + std::to_string(pages)).string()) {
    program = std::make_unique<fw::Program>(platform.services(), fw::AppInfo{home, "fablewright", home, home},
                                            fw::AllForms());
    program->Start();
    const std::string& quest = fw::bench::QuestFile(pages);
    program->RunEvent([&] { fw::OpenQuestNamed(*program, quest); });
  }
};

// From the page before the last to the last, by its first option.
void BM_PageTurn(benchmark::State& state) {
  int pages = static_cast<int>(state.range(0));
  OpenGame game(pages);
  fw::Program& p = *game.program;
  fw::GameState g(p);
  for (auto _ : state) {
    state.PauseTiming();
    g.pg.SetCaption(std::to_string(pages - 1));
    g.Text1.SetText("");  // a transcript that grew with every turn would be measured too
    g.Option1.SetVisible(true);
    g.Option1.SetValue(true);
    state.ResumeTiming();
    p.RunEvent([&] { fw::ChooseSelectedOption(p); });
  }
  if (g.pg.Caption() != std::to_string(pages)) state.SkipWithError("the turn did not reach the last page");
}

// Undo's cost on a page turn: recording a step that changes what a turn
// changes (the page, its text, its options, the score), without the turn's
// reads of the quest, so that what is timed is the copy of the game window
// before the step and the keeping of what changed. Compared with BM_PageTurn
// at the same size; the limit is a fifth of a turn.
void BM_UndoStep(benchmark::State& state) {
  int pages = static_cast<int>(state.range(0));
  OpenGame game(pages);
  fw::Program& p = *game.program;
  static int turn = 0;
  for (auto _ : state) {
    fw::RecordStep(p, [](fw::Program& p) {
      fw::GameState g(p);
      ++turn;
      g.pg.SetCaption(std::to_string(turn));
      g.score.SetCaption(std::to_string(turn % 50));
      g.room.SetText("The text of page " + std::to_string(turn) + ", as long as a page's text may be.");
      for (int n = 1; n <= 4; ++n) g.Option(n).SetCaption("Option " + std::to_string(n) + " of " + std::to_string(turn));
    });
  }
  state.counters["kept"] = static_cast<double>(fw::UndoDepth(p));
  state.counters["bytes"] = static_cast<double>(fw::UndoMemory(p));
}

}  // namespace

BENCHMARK(BM_PageTurn)->Arg(100)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_UndoStep)->Arg(10000)->Unit(benchmark::kMicrosecond);
