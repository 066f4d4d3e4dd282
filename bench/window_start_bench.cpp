// The game window's start, from the program's launch to its first painted
// frame (the splash's), against the least a Qt Widgets program does to show
// a window, both launched afresh in each iteration and measured in the same
// run. Each carries the same probe (bench/window), which reports the frame
// and ends the process. Offscreen unless the caller chose a platform: run it
// under xvfb-run too (bench/window-start.sh does both).
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

extern char** environ;

namespace {

namespace fs = std::filesystem;

long long MonotonicNs() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * 1000000000LL + now.tv_nsec;
}

// Launches the program with the probe and gives the milliseconds to its
// first frame, or a negative number when it reported none.
double FirstFrameMs(const std::vector<std::string>& command, const fs::path& scratch) {
  fs::path report = scratch / "frame";
  fs::remove(report);
  std::vector<std::string> env;
  for (char** e = environ; *e; ++e) {
    std::string_view v(*e);
    if (!v.starts_with("LD_PRELOAD=") && !v.starts_with("FABLEWRIGHT_FIRST_FRAME_FILE=")) env.emplace_back(v);
  }
  env.push_back(std::string("LD_PRELOAD=") + FABLEWRIGHT_FIRST_FRAME_PROBE);
  env.push_back("FABLEWRIGHT_FIRST_FRAME_FILE=" + report.string());
  if (!std::getenv("DISPLAY") && !std::getenv("QT_QPA_PLATFORM")) env.push_back("QT_QPA_PLATFORM=offscreen");
  std::vector<char*> argv, envp;
  for (const std::string& a : command) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);
  for (std::string& e : env) envp.push_back(e.data());
  envp.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  long long start = MonotonicNs();
  pid_t pid = 0;
  int rc = posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), envp.data());
  posix_spawn_file_actions_destroy(&actions);
  if (rc != 0) return -1;
  int status = 0;
  waitpid(pid, &status, 0);
  long long frame = 0;
  std::ifstream(report) >> frame;
  return frame > start ? (frame - start) / 1e6 : -1;
}

struct Scratch {
  fs::path dir = fs::temp_directory_path() / ("fablewright-start-" + std::to_string(getpid()));
  Scratch() { fs::create_directories(dir / "home"); }
  ~Scratch() {
    std::error_code ec;
    fs::remove_all(dir, ec);
  }
};

std::vector<std::string> MinimalWindow() { return {FABLEWRIGHT_MINIMAL_WINDOW}; }
std::vector<std::string> GameWindow(const Scratch& s) {
  return {FABLEWRIGHT_BIN_FOR_BENCH, "--home", (s.dir / "home").string()};
}

void Measure(benchmark::State& state, const std::vector<std::string>& command, const Scratch& s) {
  for (auto _ : state) {
    double ms = FirstFrameMs(command, s.dir);
    if (ms < 0) {
      state.SkipWithError("the program showed no frame");
      return;
    }
    state.SetIterationTime(ms / 1000.0);
  }
}

void BM_FirstFrame_MinimalWindow(benchmark::State& state) {
  Scratch s;
  Measure(state, MinimalWindow(), s);
}
BENCHMARK(BM_FirstFrame_MinimalWindow)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(10);

void BM_FirstFrame_GameWindow(benchmark::State& state) {
  Scratch s;
  Measure(state, GameWindow(s), s);
}
BENCHMARK(BM_FirstFrame_GameWindow)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(10);

// Both in turn in each iteration, so that a busy moment of the machine falls
// on both: the counters are the medians of each and of the ratio.
void BM_FirstFrame_Ratio(benchmark::State& state) {
  Scratch s;
  std::vector<double> minimal, game, ratio;
  for (auto _ : state) {
    double m = FirstFrameMs(MinimalWindow(), s.dir);
    double g = FirstFrameMs(GameWindow(s), s.dir);
    if (m < 0 || g < 0) {
      state.SkipWithError("a program showed no frame");
      return;
    }
    minimal.push_back(m);
    game.push_back(g);
    ratio.push_back(g / m);
  }
  auto median = [](std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v.empty() ? 0.0 : v[v.size() / 2];
  };
  state.counters["minimal_ms"] = median(minimal);
  state.counters["game_ms"] = median(game);
  state.counters["ratio"] = median(ratio);
}
BENCHMARK(BM_FirstFrame_Ratio)->Unit(benchmark::kMillisecond)->Iterations(10);

}  // namespace
