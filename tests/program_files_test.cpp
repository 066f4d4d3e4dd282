// The platform operations the logic lets fail: files, folders, processes.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "forms/dialog_folders.h"
#include "forms/paths.h"
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

// Where a file dialog opens: the program's folder while the player may write
// there; else saved games and characters in the per-user saves folder (made
// then), quests beside the last quest picked, else the home folder.
TEST(ProgramFiles, ADialogOpensWhereThePlayerMayWrite) {
  testing::TestProgram own{AllForms()};  // its folder is the player's
  testing::TempDir user, quests;
  Program installed(own.platform.services(), AppInfo{"/usr/bin", "fablewright", user.str(), user.str()}, AllForms());
  auto folder = [](Program& p, const char* dialog, const std::string& initDir) {
    const ControlDecl& d = p.surface().Decl(p.surface().Id("FrmGame", dialog));
    return DialogFolder(p, {"FrmGame", dialog, false, d.filter, d.defaultExt, initDir, "", ""});
  };
  struct Case {
    Program& p;
    const char* dialog;
    std::string initDir, opens;
  };
  auto check = [&](std::initializer_list<Case> cases) {
    for (const Case& c : cases) EXPECT_EQ(folder(c.p, c.dialog, c.initDir), c.opens) << c.dialog << " " << c.initDir;
  };
  std::string saves = user.str() + "/saves";
  check({{own.program, "file", own.program.AppPath(), own.dir.str()},
         {own.program, "charfile", "", own.dir.str()},
         {own.program, "questfile", own.program.AppPath(), own.dir.str()},
         {installed, "file", "/usr/bin", saves},
         {installed, "charfile", "", saves},
         {installed, "questfile", "/usr/bin", HomeDir()},
         // Any other InitDir stands; none leaves the dialog to the desktop.
         {installed, "questfile", quests.str(), quests.str()},
         {installed, "questfile", "", ""}});
  EXPECT_TRUE(std::filesystem::is_directory(saves));
  own.platform.dialogs.QueueFile("FrmGame.questfile", quests.str() + "/q.fbw");
  EXPECT_TRUE(installed.ShowOpen(installed.surface().Id("FrmGame", "questfile")));
  check({{installed, "questfile", "/usr/bin", quests.str()}, {installed, "file", "/usr/bin", saves}});
  EXPECT_FALSE(UsersToWrite(own.program, "/opt/game"));
  EXPECT_FALSE(UsersToWrite(own.program, own.dir.str() + "/missing"));
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
