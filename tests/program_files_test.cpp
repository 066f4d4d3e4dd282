// The platform operations the logic lets fail: files, folders, processes.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/real_services.h"
#include "shell/forms.h"
#include "test_program.h"

namespace fw {
namespace {

TEST(ProgramFiles, CopyMakeKillAndChangeFolderFailAsThePlatformDoes) {
  testing::TestProgram t{AllForms()};
  Program& p = t.program;
  std::string dir = t.dir.str();
  std::ofstream(dir + "/a.fbw") << "[1]\r\n";
  p.FileCopy(dir + "\\a.fbw", dir + "\\b.fbw");  // backslashes are folders
  EXPECT_TRUE(std::filesystem::exists(dir + "/b.fbw"));
  EXPECT_THROW(p.FileCopy(dir + "/missing.fbw", dir + "/c.fbw"), Failure);
  EXPECT_THROW(p.FileCopy(dir + "/a.fbw", dir + "/no/such/c.fbw"), Failure);
  p.MkDir(dir + "/game");
  EXPECT_THROW(p.MkDir(dir + "/game"), Failure);        // exists
  EXPECT_THROW(p.MkDir(dir + "/x/y"), Failure);         // no parent
  p.Kill(dir + "/b.fbw");
  EXPECT_THROW(p.Kill(dir + "/b.fbw"), Failure);
  p.ChDir(dir + "/game");
  std::ofstream(dir + "/game/here.txt") << "x";
  EXPECT_EQ(p.HostFile("here.txt"), dir + "/game/here.txt");
  EXPECT_EQ(p.ResolveMediaFile("here.txt"), dir + "/game/here.txt");
  EXPECT_EQ(p.ResolveMediaFile("gone.mid"), "");
  EXPECT_THROW(p.ChDir(dir + "/nowhere"), Failure);
  EXPECT_EQ(p.GetWindowsDir(), dir + "\\");
}

TEST(ProgramProcesses, AProgramStartsWithItsWordsWholeAndFailsOnlyWhenNotFound) {
  testing::TestProgram t{AllForms()};
  EXPECT_NO_THROW(t.program.Shell({"true", "--ignored"}, 3));
  EXPECT_NO_THROW(t.program.Shell({"true"}, 0));
  EXPECT_THROW(t.program.Shell({"autoupdate.exe"}, 3), Failure);
  EXPECT_EQ(t.platform.processes.started, (std::vector<std::vector<std::string>>{{"true", "--ignored"}, {"true"}}));
  EXPECT_EQ(t.platform.processes.windowStyles, (std::vector<int>{3, 0}));
  SpawnProcesses real;
  EXPECT_FALSE(real.Start({"no-such-program-here"}, 2, ""));
  // Blanks and quotes in the program's path and in an argument are theirs,
  // and the program runs in the folder given.
  testing::TempDir dir;
  const std::string program = dir.str() + "/say \"hi\" there";
  std::ofstream(program) << "#!/bin/sh\nprintf '%s|%s|%s' \"$PWD\" \"$#\" \"$1\" > said\n";
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  ASSERT_TRUE(real.Start({program, "a \"b\" c"}, 2, dir.str()));
  for (int i = 0; i < 500 && testing::FileBytes(dir.path / "said").empty(); ++i) ::usleep(10000);
  EXPECT_EQ(testing::FileBytes(dir.path / "said"), dir.str() + "|1|a \"b\" c");
}

}  // namespace
}  // namespace fw
