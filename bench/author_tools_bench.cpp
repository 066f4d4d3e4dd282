// The author tools on a generated quest, against a plain read of the same
// file in the same run: the check reads the file once and walks every page;
// the explorer plays states through the game's handlers, which read their
// keys from the file at each use.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "bench_files.h"
#include "bindings/headless/headless_services.h"
#include "editor/quest_check.h"
#include "editor/quest_explore.h"
#include "editor/quest_map.h"
#include "platform/graphviz_layout.h"
#include "store/program_store.h"
#include "shell/forms.h"
#include "forms/program.h"

namespace {

namespace fs = std::filesystem;

// n pages in a ring with shortcuts; a dozen items handed out and required
// along the way, and a battle every tenth page.
const std::string& CheckedQuest(int pages) {
  static std::map<int, std::string> made;
  if (auto it = made.find(pages); it != made.end()) return it->second;
  fs::path dir = fw::bench::ScratchFolder("check");
  std::string path = (dir / ("quest" + std::to_string(pages) + ".fbw")).string();
  std::ofstream out(path, std::ios::binary);
  out << "[Story Info]\r\nTitle=Bench\r\n[Quest Data]\r\nNumber Of Pages=" << pages
      << "\r\n[CharacterData]\r\nCharCreateAllow=1\r\nCharHp=40\r\nCharAtk=6\r\nCharDef=4\r\n";
  const char* names[] = {"One", "Two", "Three", "Four"};
  for (int p = 1; p <= pages; ++p) {
    out << "[" << p << "]\r\nLocation=Room " << p << "\r\nPage Text=You stand in room " << p
        << ". Passages lead off in several directions.\r\n";
    int to[4] = {p % pages + 1, (p * 7) % pages + 1, (p + 2) % pages + 1, 1};
    for (int o = 0; o < 4; ++o) {
      out << "Option " << names[o] << "=Passage " << o + 1 << "\r\nOption " << names[o] << " Score=+" << o
          << "\r\nOption " << names[o] << " Destination Page=" << to[o] << "\r\n";
      if (o == 1) out << "Key Item2=Item " << p % 12 << "\r\nAdd2=1\r\n";
      if (o == 2) out << "Key Item3=Item " << (p + 5) % 12 << "\r\nRequired3=1\r\n";
    }
    if (p % 10 == 0)
      out << "Battle=1\r\nBattleMonName=Rat\r\nBattleMonHp=12\r\nBattleMonAtk=3\r\nBattleWin=" << p % pages + 1
          << "\r\nBattleLose=1\r\nBattleEscape=" << p << "\r\n";
  }
  return made[pages] = path;
}

void BM_Check(benchmark::State& state) {
  const std::string& path = CheckedQuest(static_cast<int>(state.range(0)));
  fw::HeadlessPlatform platform;
  std::string folder = fs::path(path).parent_path().string();
  fw::Program p(platform.services(), fw::AppInfo{folder, "fablewright", folder, folder}, {});
  for (auto _ : state) {
    auto findings = fw::CheckQuest(p, path);
    if (!findings || !findings->empty()) state.SkipWithError("the generated quest should check clean");
    benchmark::DoNotOptimize(findings);
  }
  state.counters["pages/s"] = benchmark::Counter(static_cast<double>(state.range(0)) * state.iterations(),
                                                 benchmark::Counter::kIsRate);
}

// The reference: one plain read of the same file.
void BM_CheckReference_ReadFile(benchmark::State& state) {
  const std::string& path = CheckedQuest(static_cast<int>(state.range(0)));
  for (auto _ : state) fw::bench::ReadWholeFile(path);
}

// States explored per second, the search bounded at 2,000 states a run: the
// ring's scores never repeat, so it would go on.
void BM_Explore(benchmark::State& state) {
  const std::string& path = CheckedQuest(static_cast<int>(state.range(0)));
  fw::HeadlessPlatform platform;
  std::string folder = fs::path(path).parent_path().string();
  fw::Program p(platform.services(), fw::AppInfo{folder, "fablewright", folder, folder}, fw::AllForms());
  fw::ExploreOptions options;
  options.maxStates = 2000;
  options.fights = 0;  // the search alone
  std::size_t states = 0;
  for (auto _ : state) states += fw::ExploreQuest(p, path, options).states;
  state.counters["states/s"] = benchmark::Counter(static_cast<double>(states), benchmark::Counter::kIsRate);
}

// The editor's map window: the map laid out and drawn as a PNG, with each
// page's box for the clicks.
void BM_MapPicture(benchmark::State& state) {
  const std::string& path = CheckedQuest(static_cast<int>(state.range(0)));
  fw::HeadlessPlatform platform;
  std::string folder = fs::path(path).parent_path().string();
  fw::Program p(platform.services(), fw::AppInfo{folder, "fablewright", folder, folder}, {});
  fw::QuestGraph graph = fw::BuildQuestGraph(fw::ReadINIImage(p, path));
  fw::GraphvizLayout graphs;
  for (auto _ : state) {
    fw::MapPicture map;
    std::string error;
    if (!fw::RenderQuestMapPicture(graphs, graph, "Bench", map, error)) state.SkipWithError(error.c_str());
    benchmark::DoNotOptimize(map);
  }
}

// Its reference: the same map laid out and written as SVG, as `map -o map.svg` does.
void BM_MapReference_Svg(benchmark::State& state) {
  const std::string& path = CheckedQuest(static_cast<int>(state.range(0)));
  fw::HeadlessPlatform platform;
  std::string folder = fs::path(path).parent_path().string();
  fw::Program p(platform.services(), fw::AppInfo{folder, "fablewright", folder, folder}, {});
  fw::QuestGraph graph = fw::BuildQuestGraph(fw::ReadINIImage(p, path));
  fw::GraphvizLayout graphs;
  for (auto _ : state) {
    std::string svg, error;
    if (!fw::RenderQuestMap(graphs, graph, "Bench", "svg", svg, error)) state.SkipWithError(error.c_str());
    benchmark::DoNotOptimize(svg);
  }
}

}  // namespace

BENCHMARK(BM_MapReference_Svg)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MapPicture)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Explore)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CheckReference_ReadFile)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Check)->Arg(100)->Arg(10000)->Unit(benchmark::kMillisecond);
