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

TEST(ProgramProcesses, ShellFailsOnlyWhenTheProgramIsNotFound) {
  testing::TestProgram t{AllForms()};
  EXPECT_NO_THROW(t.program.Shell("true --ignored", 3));
  EXPECT_NO_THROW(t.program.Shell("true", 0));
  EXPECT_THROW(t.program.Shell("autoupdate.exe", 3), Failure);
  EXPECT_EQ(t.platform.processes.started, (std::vector<std::string>{"true --ignored", "true"}));
  EXPECT_EQ(t.platform.processes.windowStyles, (std::vector<int>{3, 0}));
  SpawnProcesses real;
  EXPECT_TRUE(real.Start("true", 2, ""));
  EXPECT_FALSE(real.Start("no-such-program-here", 2, ""));
  // A program started after a ChDir runs in that folder.
  testing::TempDir dir;
  ASSERT_TRUE(real.Start("sh -c \"pwd > started-here\"", 2, dir.str()));
  for (int i = 0; i < 500 && !std::filesystem::exists(dir.path / "started-here"); ++i) ::usleep(10000);
  EXPECT_TRUE(std::filesystem::exists(dir.path / "started-here"));
}

}  // namespace
}  // namespace fw
