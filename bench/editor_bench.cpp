// The editor on the generated quests, against the store's own read and
// write of the same quest in the same run: selecting the last page (every
// field read, and written back where it changed) and one key stroke in the
// page text.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>
#include <string>

#include "bench_files.h"
#include "bindings/headless/headless_services.h"
#include "editor/createquest.h"
#include "editor/editor_state.h"
#include "forms/controls.h"
#include "forms/program.h"
#include "forms/user_actions.h"
#include "shell/forms.h"

namespace {

// A headless program whose editor has the quest of n pages open, as Load
// opens it, in a per-user folder of its own.
struct OpenEditor {
  // With `load`, the quest is not opened yet.
  std::string home;
  fw::HeadlessPlatform platform;
  std::unique_ptr<fw::Program> program;
  fw::ControlId pg, text;

  explicit OpenEditor(int pages, bool load = true) : home(fw::bench::ScratchFolder("editor" + std::to_string(pages)).string()) {
    // A working file of an earlier round would be offered back.
    std::filesystem::remove(home + "/tmpquest.ini");
    program = std::make_unique<fw::Program>(platform.services(), fw::AppInfo{home, "fablewright", home, home},
                                            fw::AllForms());
    program->Start();
    if (load) Load(pages);
    pg = program->surface().Id("createquest", "pg");
    text = program->surface().Id("createquest", "Text1");
  }
  void Load(int pages) {
    const std::string& quest = fw::bench::QuestFile(pages);
    program->RunEvent([&] { fw::OpenEditorOn(*program, quest); });
  }
  // The list holds at most the editor's most pages.
  int Listed(int pages) const { return std::min(pages, fw::kMostPages); }
  void Choose(int index) { fw::Act(*program, pg, fw::UserAction::Choose, {}, index); }
};

void BM_EditorSelectPage(benchmark::State& state) {
  int pages = static_cast<int>(state.range(0));
  OpenEditor editor(pages);
  for (auto _ : state) {
    // From the page before, so that the fields change and write back.
    state.PauseTiming();
    editor.Choose(editor.Listed(pages) - 2);
    state.ResumeTiming();
    editor.Choose(editor.Listed(pages) - 1);
  }
}

// Opening the quest in a fresh editor, as Load opens it.
void BM_EditorLoad(benchmark::State& state) {
  int pages = static_cast<int>(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    auto editor = std::make_unique<OpenEditor>(pages, false);
    state.ResumeTiming();
    editor->Load(pages);
    state.PauseTiming();
    editor.reset();
    state.ResumeTiming();
  }
}

void BM_EditorKeystroke(benchmark::State& state) {
  int pages = static_cast<int>(state.range(0));
  OpenEditor editor(pages);
  editor.Choose(pages - 1);
  std::string typed = "You stand in the last room.";
  int i = 0;
  for (auto _ : state) {
    typed.back() = (i++ % 2) ? '.' : '!';
    fw::Act(*editor.program, editor.text, fw::UserAction::Type, typed);
  }
}

}  // namespace

BENCHMARK(BM_EditorSelectPage)->Arg(100)->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(BM_EditorLoad)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EditorKeystroke)->Arg(100)->Arg(1000)->Arg(10000);
