// Finding the files that quests written on Windows name.
#include <gtest/gtest.h>

#include <fstream>

#include "forms/codepage.h"
#include "play/quest_paths.h"
#include "shell/forms.h"
#include "test_program.h"

namespace fw {
namespace {

namespace fs = std::filesystem;

class QuestPaths : public ::testing::Test {
 protected:
  testing::TestProgram t{AllForms()};
  Program& p = t.program;

  // A small GIF at a path under the test folder.
  std::string Make(const std::string& rel) {
    fs::path path = t.dir.path / fs::u8path(rel);
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << "GIF89a";
    return path.string();
  }
  // The file the program opens for a name a quest gives.
  std::string Found(std::string_view name, const std::string& folder) {
    return p.HostFile(FindQuestFile(p, name, folder));
  }
  std::string Named(const std::string& host) { return Cp1252FromUtf8(host); }
  std::string Dir() { return Named(t.dir.str()); }
};

TEST_F(QuestPaths, AnExactNameWinsElseOneInOtherLetterCaseFolderByFolder) {
  Make("pics/Door.gif");
  Make("pics/door.gif");
  EXPECT_EQ(FindQuestFile(p, "pics\\Door.gif", "elsewhere"), "pics\\Door.gif");
  EXPECT_EQ(FindQuestFile(p, "pics\\door.gif", "elsewhere"), "pics\\door.gif");
  std::string host = Make("Pics/Old/Hall.gif");
  EXPECT_EQ(Found("PICS\\old\\HALL.GIF", "elsewhere"), host);
  EXPECT_EQ(Found(Dir() + "\\PICS\\OLD\\hall.gif", "elsewhere"), host);
  // A folder of the exact name is the one meant: its case twins are not read.
  EXPECT_EQ(FindQuestFile(p, "pics\\OLD\\hall.gif", "elsewhere"), "pics\\OLD\\hall.gif");
  std::string accented = Make("quest/\xC3\xA9t\xC3\xA9.gif");  // été.gif
  EXPECT_EQ(Found("quest\\\xC9T\xC9.GIF", "elsewhere"), accented);  // ÉTÉ.GIF
}

TEST_F(QuestPaths, ADriveLetterOrABareNameFallsBackToTheQuestFolder) {
  std::string host = Make("quest/hall.gif");
  std::string quest = Dir() + "\\quest";
  EXPECT_EQ(Found("C:\\Games\\Crypt\\Hall.GIF", quest), host);
  EXPECT_EQ(Found("d:hall.gif", quest), host);
  EXPECT_EQ(Found("HALL.gif", quest), host);
  // A relative path with a folder means the current folder only.
  EXPECT_EQ(FindQuestFile(p, "art\\hall.gif", quest), "art\\hall.gif");
}

TEST_F(QuestPaths, NothingFoundGivesTheNameBackAndAFolderIsNoFile) {
  fs::create_directories(t.dir.path / "quest" / "Pics");
  EXPECT_EQ(FindQuestFile(p, "C:\\x\\gone.gif", Dir() + "\\quest"), "C:\\x\\gone.gif");
  EXPECT_EQ(FindQuestFile(p, "pics", Dir() + "\\quest"), "pics");
  EXPECT_EQ(FindQuestFile(p, "", Dir()), "");
}

// Pages that name missing media are shown often: a lookup reads a folder only
// where a part's exact name is missing from it, and each folder once.
TEST_F(QuestPaths, AMissingFileReadsOnlyTheFoldersWhereANameIsMissingEachOnce) {
  Make("Quest/Music/theme.mid");
  Make("quest/music/other.mid");
  std::vector<std::string> read;
  FolderListings listings([&](const fs::path& dir) {
    read.push_back(dir.lexically_relative(t.dir.path).string());
    return ReadFolder(dir);
  });
  std::string root = t.dir.str();
  EXPECT_EQ(MatchIgnoringCase(root + "/quest/music/gone.mid", listings), "");
  EXPECT_EQ(read, (std::vector<std::string>{"quest/music"}));
  read.clear();
  EXPECT_EQ(MatchIgnoringCase(root + "/QUEST/MUSIC/THEME.MID", listings), root + "/Quest/Music/theme.mid");
  EXPECT_EQ(MatchIgnoringCase(root + "/QUEST/MUSIC/THEME.MID", listings), root + "/Quest/Music/theme.mid");
  // The test folder once, then each case twin of Quest once, then Music.
  EXPECT_EQ(read, (std::vector<std::string>{".", "Quest", "Quest/Music"}));
}

TEST_F(QuestPaths, TheQuestFolderOfABareProfileNameIsThePerUserFolder) {
  EXPECT_EQ(QuestFolder(p, "/games/crypt\\Crypt.fbw"), "/games/crypt");
  EXPECT_EQ(QuestFolder(p, "tmpquest.ini"), Named(t.dir.str()));
}

}  // namespace
}  // namespace fw
