// The catalogue of bad input at the command line: each kind of bad file
// named to each job that reads a file (play, ini get, script, check), run as
// the program is run, as an unprivileged user. Each must end in its own time
// with an exit code and a clear line, never a crash or a hang, and leave the
// file as it was.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <map>

#include "bad_input.h"
#include "test_program.h"

namespace fw {
namespace {

using testing::BadFile;
namespace fs = std::filesystem;

const std::string kBin = FABLEWRIGHT_BIN;
const std::string kGood = "[1]\r\nLocation=Gate\r\nPage Text=A gate.\r\nOption One=Go in\r\n";

struct Ran {
  int code = -1;  // the exit code; -1 for a signal, which a timeout sends too
  std::string out;
};

// Runs a command line in dir, with no display and no input, as "nobody"
// when the tests run as root, for two minutes at most.
Ran Shell(const fs::path& dir, const std::string& command) {
  std::string user = ::getuid() == 0 ? "setpriv --reuid=65534 --regid=65534 --clear-groups " : "";
  std::string line = "cd '" + dir.string() + "' && env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM timeout 120 " +
                     user + command + " </dev/null 2>&1";
  std::FILE* pipe = ::popen(line.c_str(), "r");
  Ran r;
  char buf[4096];
  while (std::size_t n = std::fread(buf, 1, sizeof buf, pipe)) r.out.append(buf, n);
  int status = ::pclose(pipe);
  if (WIFEXITED(status) && WEXITSTATUS(status) < 124) r.code = WEXITSTATUS(status);
  return r;
}

struct Expected {
  int code;
  std::string says;  // a part of what it prints
};

struct Job {
  const char* name;
  std::string command;  // BAD stands for the bad file's name
  Expected usual;
  std::map<std::string, Expected> otherwise;
};

const Expected kEmptyPage{0, "The End \xE2\x80\x94 Game > Restart Quest to play again\n(Type restart, open, quit or help.)"};
const Expected kNoQuest{1, "fablewright: no quest file bad.fbw\n"};
const Expected kCannotRead{1, "fablewright ini: cannot read ./bad.fbw\n"};
const Expected kCannotReadQuest{1, "fablewright: cannot read the quest file bad.fbw: Permission denied\n"};

std::vector<Job> Jobs() {
  return {
      {"play",
       kBin + " play bad.fbw --home home --silent",
       kEmptyPage,
       {{"a line of 1 MB", {0, "\n" + std::string(8999, 'w') + "\nScore: 0\nThe End"}},
        {"a huge file", {0, "At the end."}},
        {"NUL bytes", {0, "A gate.\n  1. Go in"}},
        {"UTF-8 with a byte-order mark", {0, "A gate.\n  1. Go in"}},
        {"CR line ends only", {0, "A gate.\n  1. Go in"}},
        {"a folder", kNoQuest},
        {"a dangling link", kNoQuest},
        {"a file nobody may read", kCannotReadQuest}}},
      {"ini get",
       kBin + " ini get ./bad.fbw 1 \"Page Text\" --home home",
       {0, "\n"},
       {{"a line of 1 MB", {0, std::string(8999, 'w') + "\n"}},
        {"a huge file", {0, "At the end.\n"}},
        {"NUL bytes", {0, "A gate.\n"}},
        {"UTF-8 with a byte-order mark", {0, "A gate.\n"}},
        {"CR line ends only", {0, "A gate.\n"}},
        {"bytes that are not Windows-1252", {0, "\u0081\u008D\u008F\u0090\u009D \u00C3( \u00F0(\u0152\n"}},
        {"a folder", kCannotRead},
        {"a dangling link", kCannotRead},
        {"a file nobody may read", kCannotRead}}},
      {"script",
       kBin + " script bad.fbw --home home",
       {2, "line 1: "},
       {{"an empty file", {0, "0 passed, 0 failed\n"}},
        {"a folder", {2, "fablewright: bad.fbw is a folder, not a script file\n"}},
        {"a dangling link", {2, "fablewright: cannot read script bad.fbw\n"}},
        {"a file nobody may read", {2, "fablewright: cannot read script bad.fbw\n"}}}},
  };
}

class BadInputAtTheCommandLine : public ::testing::TestWithParam<std::size_t> {};

TEST_P(BadInputAtTheCommandLine, EndsWithAClearLineAndChangesNoFile) {
  const Job job = Jobs()[GetParam()];
  for (const BadFile& kind : testing::BadFiles(kGood)) {
    testing::TempDir dir;
    fs::create_directories(dir.path / "home");
    fs::path bad = dir.path / "bad.fbw";
    kind.make(bad);
    testing::GiveToChild(dir.path);
    std::string before = testing::Fingerprint(bad);

    Ran ran = Shell(dir.path, job.command);

    auto other = job.otherwise.find(kind.name);
    const Expected& want = other == job.otherwise.end() ? job.usual : other->second;
    EXPECT_EQ(ran.code, want.code) << job.name << ", " << kind.name << ": " << ran.out.substr(0, 300);
    EXPECT_NE(ran.out.find(want.says), std::string::npos) << job.name << ", " << kind.name << ": "
                                                          << ran.out.substr(0, 300);
    EXPECT_EQ(testing::Fingerprint(bad), before) << job.name << ", " << kind.name;
  }
}

INSTANTIATE_TEST_SUITE_P(Jobs, BadInputAtTheCommandLine, ::testing::Range<std::size_t>(0, 3),
                         [](const auto& info) {
                           std::string name = Jobs()[info.param].name;
                           std::erase(name, ' ');
                           return name;
                         });

// Command lines that cannot be carried out: each says which word is wrong
// and why, and ends with 2 before the program starts.
TEST(BadCommandLines, SayWhichWordIsWrong) {
  testing::TempDir dir;
  testing::WriteBytes(dir.path / "q.fbw", kGood);
  testing::WriteBytes(dir.path / "afile", "");
  const std::string notAFolder = "fablewright: --home " + (dir.path / "afile").string() + " is not a folder\n";
  const std::pair<std::string, std::string> lines[] = {
      {"play q.fbw --home afile", notAFolder},
      {"q.fbw --home afile", notAFolder},
      {"script s.txt --home afile", notAFolder},
      {"play q.fbw --home", "fablewright: --home needs a folder\n"},
      {"--app-dir", "fablewright: --app-dir needs a folder\n"},
      {"play q.fbw --seed 1234567890", "fablewright: --seed needs a whole number of one to nine digits\n"},
      {"q.fbw --seed -1", "fablewright: --seed needs a whole number of one to nine digits\n"},
      {"play q.fbw --fast", "fablewright: unknown argument for play: --fast\n"},
      {"ini get ./q.fbw 1", "fablewright ini: usage: ini get FILE SECTION KEY | ini set FILE SECTION KEY VALUE\n"},
  };
  for (const auto& [args, says] : lines) {
    Ran ran = Shell(dir.path, kBin + " " + args);
    EXPECT_EQ(ran.code, 2) << args;
    EXPECT_EQ(ran.out, says) << args;
  }
  EXPECT_EQ(testing::Fingerprint(dir.path / "afile"), "0 bytes, hash " + std::to_string(std::hash<std::string>{}("")) +
                                                          ", mode 420");
}

}  // namespace
}  // namespace fw
