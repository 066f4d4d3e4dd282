// What a start loads: the jobs without a window load no part of the window
// toolkit, and the game window's module is loaded only when a window opens,
// from beside the executable or from lib/ beside it. The dynamic loader's
// own trace (LD_DEBUG) tells which libraries a run loaded.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "test_program.h"

namespace fw {
namespace {

namespace fs = std::filesystem;

const fs::path kBin = FABLEWRIGHT_BIN;

struct Ran {
  int code = -1;
  std::string out;     // both streams
  std::string loaded;  // the loader's trace
};

// Runs the program with `args` in dir, with no display but the platform
// given, for at most `seconds`, and the loader's trace of every library it
// loaded.
Ran RunTraced(const fs::path& dir, const std::string& platform, const fs::path& bin, const std::string& args,
              int seconds = 60) {
  fs::path trace = dir / "trace";
  std::string line = "cd '" + dir.string() + "' && env -u DISPLAY -u WAYLAND_DISPLAY QT_QPA_PLATFORM=" + platform +
                     " LD_DEBUG=files LD_DEBUG_OUTPUT='" + trace.string() + "' timeout -s KILL " +
                     std::to_string(seconds) + " '" + bin.string() + "' " + args + " 2>&1";
  std::FILE* pipe = ::popen(line.c_str(), "r");
  Ran r;
  char buf[4096];
  while (std::size_t n = std::fread(buf, 1, sizeof buf, pipe)) r.out.append(buf, n);
  int status = ::pclose(pipe);
  if (WIFEXITED(status)) r.code = WEXITSTATUS(status);
  for (const auto& entry : fs::directory_iterator(dir)) {
    if (!entry.path().filename().string().starts_with("trace.")) continue;
    std::ostringstream text;
    text << std::ifstream(entry.path()).rdbuf();
    r.loaded += text.str();
    fs::remove(entry.path());
  }
  return r;
}

bool LoadedQt(const Ran& r) { return r.loaded.find("file=libQt6") != std::string::npos; }

TEST(Startup, JobsWithoutAWindowLoadNoWindowToolkit) {
  testing::TempDir dir;
  std::ofstream(dir.path / "q.fbw", std::ios::binary) << "[1]\r\nPage Text=Here.\r\n";
  std::ofstream(dir.path / "s.txt") << "expect FrmGame.Visible == \"True\"\n";
  for (const char* args : {"--version", "ini get ./q.fbw 1 \"Page Text\"", "script s.txt --home .",
                           "play q.fbw --home . --silent </dev/null", "q.fbw --home . </dev/null"}) {
    Ran r = RunTraced(dir.path, "", kBin, args);
    EXPECT_EQ(r.code, 0) << args << ": " << r.out;
    EXPECT_NE(r.loaded.find("file="), std::string::npos) << args << ": the loader traced nothing";
    EXPECT_FALSE(LoadedQt(r)) << args;
    EXPECT_EQ(r.loaded.find("fablewright-window.so"), std::string::npos) << args;
  }
}

TEST(Startup, AWindowLoadsItsModuleFromBesideTheProgramOrFromLibBesideIt) {
  testing::TempDir dir;
  std::ofstream(dir.path / "q.fbw", std::ios::binary) << "[1]\r\nPage Text=Here.\r\n";
  // The window stays open until the player closes it: the run is stopped.
  Ran beside = RunTraced(dir.path, "offscreen", kBin, "q.fbw --home .", 5);
  EXPECT_NE(beside.loaded.find("file=" + (kBin.parent_path() / "fablewright-window.so").string()), std::string::npos);
  EXPECT_TRUE(LoadedQt(beside));

  // A copy of the program with its module in lib/, and one without it,
  // which plays in the terminal instead and says why.
  fs::create_directories(dir.path / "copy" / "lib");
  fs::copy_file(kBin, dir.path / "copy" / "fablewright");
  fs::copy_file(kBin.parent_path() / "fablewright-window.so", dir.path / "copy" / "lib" / "fablewright-window.so");
  Ran fromLib = RunTraced(dir.path, "offscreen", dir.path / "copy" / "fablewright", "q.fbw --home .", 5);
  EXPECT_NE(fromLib.loaded.find("file=" + (dir.path / "copy" / "lib" / "fablewright-window.so").string()),
            std::string::npos);

  fs::remove(dir.path / "copy" / "lib" / "fablewright-window.so");
  Ran without = RunTraced(dir.path, "offscreen", dir.path / "copy" / "fablewright",
                    "q.fbw --home . </dev/null");
  EXPECT_EQ(without.code, 0);
  EXPECT_TRUE(without.out.starts_with("fablewright: cannot open a window: fablewright-window.so is not beside the "
                                      "program, in lib/ beside it, nor in "))
      << without.out;
  EXPECT_NE(without.out.find("fablewright: playing in the terminal instead\n"), std::string::npos) << without.out;
  EXPECT_NE(without.out.find("Here."), std::string::npos) << without.out;
  EXPECT_FALSE(LoadedQt(without));
}

}  // namespace
}  // namespace fw
