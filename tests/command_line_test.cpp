// A quest named on the command line of the program's own job, as a file
// manager's double click gives it: without a display it plays in the
// terminal as `play` would, and a name the game cannot open is refused with
// a clear line and a non-zero exit, never an empty game.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "test_program.h"

namespace fw {
namespace {

struct Ran {
  int code;
  std::string out;
};

// Runs a shell command line in dir, with no display; gives its exit code and
// everything it printed, both streams.
Ran Shell(const std::string& dir, const std::string& command) {
  std::string line = "cd '" + dir + "' && env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM " + command + " 2>&1";
  std::FILE* pipe = ::popen(line.c_str(), "r");
  std::string out;
  char buf[4096];
  while (std::size_t n = std::fread(buf, 1, sizeof buf, pipe)) out.append(buf, n);
  int status = ::pclose(pipe);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, out};
}

const std::string kBin = FABLEWRIGHT_BIN;

TEST(CommandLine, AQuestGivenWithoutADisplayPlaysInTheTerminalAsPlayWould) {
  testing::TempDir dir;
  std::ofstream(dir.str() + "/road.fbw", std::ios::binary)
      << "[Story Info]\r\nTitle=The Road\r\n[1]\r\nLocation=The gate\r\nPage Text=Start here.\r\n"
         "Option One=Go in\r\nOption One Destination Page=2\r\n[2]\r\nLocation=The hall\r\nPage Text=Inside.\r\n";
  Ran own = Shell(dir.str(), "printf '1\\n' | " + kBin + " road.fbw --home . --seed 3");
  Ran played = Shell(dir.str(), "printf '1\\n' | " + kBin + " play road.fbw --home . --seed 3");
  EXPECT_EQ(own.code, 0);
  const std::string fallback = "fablewright: no display; playing in the terminal instead\n";
  ASSERT_TRUE(own.out.starts_with(fallback)) << own.out;
  EXPECT_NE(own.out.find("Start here.\n  1. Go in\n"), std::string::npos) << own.out;
  EXPECT_NE(own.out.find("Inside."), std::string::npos) << own.out;
  EXPECT_EQ(own.out.substr(fallback.size()), played.out);
}

TEST(CommandLine, AQuestTheGameCannotOpenIsRefusedWithAReason) {
  testing::TempDir dir;
  std::filesystem::create_directories(dir.path / "日本");
  std::ofstream(dir.str() + "/日本/far.fbw") << "[1]\r\nPage Text=Far.\r\n";
  std::ofstream(dir.str() + "/near.fbw") << "[1]\r\nPage Text=Near.\r\n";

  Ran missing = Shell(dir.str(), kBin + " nowhere.fbw --home .");
  EXPECT_EQ(missing.code, 1);
  EXPECT_EQ(missing.out, "fablewright: no quest file nowhere.fbw\n");
  Ran folder = Shell(dir.str(), kBin + " . --home .");
  EXPECT_EQ(folder.code, 1);
  EXPECT_EQ(folder.out, "fablewright: no quest file .\n");
  // Its text is Windows-1252: the path would reach it with "?" for each
  // such letter, and name nothing.
  for (const char* job : {"", "play "}) {
    Ran far = Shell(dir.str(), kBin + " " + job + "日本/far.fbw --home . </dev/null");
    EXPECT_EQ(far.code, 1) << job;
    EXPECT_EQ(far.out, "fablewright: cannot open 日本/far.fbw: the game takes only Windows-1252 characters in a path\n")
        << job;
  }
  Ran two = Shell(dir.str(), kBin + " near.fbw near.fbw --home .");
  EXPECT_EQ(two.code, 2);
  EXPECT_EQ(two.out, "fablewright: unknown argument: near.fbw\n");
}

}  // namespace
}  // namespace fw
