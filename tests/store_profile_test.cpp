// The profile grammar, the writes that keep every other byte, and the files
// on disk. Writers in other processes are store_crash_test's and
// store_disk_test's.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "store/profile.h"
#include "test_program.h"

namespace fw {
namespace {

TEST(ProfileGrammar, LookupsIgnoreCaseTrimAndTakeTheFirstMatch) {
  std::string t =
      "Orphan=before any header\r\n"
      "[Story Info]\r\n"
      "  TITLE  =  The Old Mill  \r\n"
      "title=second\r\n"
      "; Author=a comment\r\n"
      "no key here\r\n"
      "Quoted=\"  kept blanks  \"\r\n"
      "Single='x'\r\n"
      "Lone=\"\r\n"
      "Eq=a=b\r\n"
      "  [ 1 ] trailing words\r\n"
      "Page=one\r\n"
      "[1]\r\n"
      "Page=shadowed\r\n"
      "Late=in the second [1]\r\n"
      "[Open\r\n"
      "Key=no closing bracket\r\n";
  EXPECT_EQ(FindProfileValue(t, "story info", "Title"), "The Old Mill");
  EXPECT_EQ(FindProfileValue(t, "Story Info", "Author"), "");
  EXPECT_EQ(FindProfileValue(t, "Story Info", "no key here"), "");
  EXPECT_EQ(FindProfileValue(t, "Story Info", "Quoted"), "  kept blanks  ");
  EXPECT_EQ(FindProfileValue(t, "Story Info", "Single"), "x");
  EXPECT_EQ(FindProfileValue(t, "Story Info", "Lone"), "\"");
  EXPECT_EQ(FindProfileValue(t, "Story Info", "Eq"), "a=b");
  EXPECT_EQ(FindProfileValue(t, "1", "Page"), "one");
  EXPECT_EQ(FindProfileValue(t, "1", "Late"), "");  // only the first [1] is searched
  EXPECT_EQ(FindProfileValue(t, "Open", "Key"), "no closing bracket");
  EXPECT_EQ(FindProfileValue(t, "", "Orphan"), "");
  EXPECT_EQ(FindProfileValue("[]\r\nk=v\r\n", "", "k"), "");
}

TEST(ProfileGrammar, EveryLineEndAndAByteOrderMark) {
  EXPECT_EQ(FindProfileValue("[a]\rk=cr\r[b]\rk=2", "a", "k"), "cr");
  EXPECT_EQ(FindProfileValue("[a]\nk=lf\n", "A", "K"), "lf");
  EXPECT_EQ(FindProfileValue("\xEF\xBB\xBF[a]\r\nk=bom\r\n", "a", "k"), "bom");
  EXPECT_EQ(FindProfileValue("[a]\r\nk=first line\r\nsecond line\r\n", "a", "k"), "first line");
}

TEST(ProfileWrites, ReplaceInPlaceAndKeepEveryOtherByte) {
  std::string t = "; made by hand\n\n[1]\n  Option One = Go\nOPTION TWO=Stay   \n\n[2]\nx=1\n";
  EXPECT_EQ(SetProfileValue(t, "1", "option two", "Leave"),
            "; made by hand\n\n[1]\n  Option One = Go\nOPTION TWO=Leave\n\n[2]\nx=1\n");
  EXPECT_EQ(SetProfileValue(t, "1", "Music", "a.mid"),
            "; made by hand\n\n[1]\n  Option One = Go\nOPTION TWO=Stay   \nMusic=a.mid\n\n[2]\nx=1\n");
  EXPECT_EQ(SetProfileValue(t, "3", "k", ""), t + "[3]\nk=\n");
  EXPECT_EQ(SetProfileValue(t, "", "k", "v"), t);
}

TEST(ProfileWrites, LineEndsOfNewAndOldFiles) {
  EXPECT_EQ(SetProfileValue("", "Story Info", "Title", "T"), "[Story Info]\r\nTitle=T\r\n");
  EXPECT_EQ(SetProfileValue("[a]\rk=1", "a", "k", "2"), "[a]\rk=2\r");
  EXPECT_EQ(SetProfileValue("[a]\nk=1", "a", "j", "2"), "[a]\nk=1\nj=2\n");
  EXPECT_EQ(SetProfileValue("[a]", "a", "j", "2"), "[a]\r\nj=2\r\n");
  EXPECT_EQ(SetProfileValue("\xEF\xBB\xBF[a]\r\nk=1\r\n", "A", "K", "2"), "\xEF\xBB\xBF[a]\r\nk=2\r\n");
  std::string broken = SetProfileValue("[a]\r\n", "a", "Page Text", "one\r\ntwo=2");
  EXPECT_EQ(FindProfileValue(broken, "a", "Page Text"), "one");
  EXPECT_EQ(FindProfileValue(broken, "a", "two"), "2");
}

class ProfileFiles : public ::testing::Test {
 protected:
  testing::TempDir dir;
  std::string home = dir.str() + "/home";
  QuestStore store{home};
  void SetUp() override { std::filesystem::create_directories(home); }
  int FilesIn(const std::string& folder) {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator(folder), {}));
  }
};

// A read takes the file in blocks of 256 KiB and stops at its key's line:
// lines that cross a block's end, a CR LF split by it, a line longer than a
// block and a key after the last line end read as a search of the whole text.
TEST_F(ProfileFiles, AReadInBlocksFindsWhatASearchOfTheWholeTextFinds) {
  const std::size_t block = 256 * 1024;
  std::string text = "\xEF\xBB\xBF[Story Info]\r\nTitle=Blocks\r\n[1]\r\n";
  text += "Pad=" + std::string(block - 1 - text.size() - 4, 'p');  // its CR ends the first block
  text += "\r\nSplit=after the CR LF\r\n[2]\rLong=" + std::string(3 * block / 2, 'l') + "\rNext=x\r";
  for (int p = 3; text.size() < 3 * block; ++p) text += "[" + std::to_string(p) + "]\nKey=page " + std::to_string(p) + "\n";
  text += "[Last]\r\n Key = at the very end";
  std::string quest = home + "/blocks.fbw";
  std::ofstream(quest, std::ios::binary) << text;
  ASSERT_EQ(text[block - 1], '\r');
  const char* lookups[][2] = {{"Story Info", "Title"}, {"1", "Split"}, {"1", "Pad"},  {"2", "Long"},
                              {"2", "Next"},           {"2", "Missing"}, {"3", "Key"}, {"Last", "Key"},
                              {"Nowhere", "Key"},      {"1", "Next"}};
  for (auto [section, key] : lookups)
    EXPECT_EQ(store.ReadINI(quest, section, key), FindProfileValue(text, section, key)) << section << "/" << key;
  EXPECT_EQ(store.ReadINI(quest, "1", "Split"), "after the CR LF");
  EXPECT_EQ(store.ReadINI(quest, "Last", "Key"), "at the very end");
  EXPECT_EQ(store.ReadINI(quest, "2", "Long").size(), kMaxValueLength);
}

TEST_F(ProfileFiles, ReadsCreateNothingAndWritesCreateTheFile) {
  std::string quest = dir.str() + "/q.fbw";
  EXPECT_EQ(store.ReadINI(quest, "Story Info", "Title"), "");
  EXPECT_FALSE(std::filesystem::exists(quest));
  store.WriteINI(quest, "Story Info", "Title", "The Old Mill");
  EXPECT_EQ(testing::FileBytes(quest), "[Story Info]\r\nTitle=The Old Mill\r\n");
  EXPECT_EQ(store.ReadINI(quest, "STORY INFO", "title"), "The Old Mill");
  store.WriteINI(dir.str() + "/missing/q.fbw", "a", "b", "c");  // silent
  EXPECT_EQ(FilesIn(dir.str()), 2);
}

TEST_F(ProfileFiles, SeveralKeysGoInAsOneChangeOrNotAtAll) {
  std::string save = dir.str() + "/g.sav";
  store.WriteINI(save, "List Data", "2", "Rope");
  const QuestStore::Entry keys[] = {{"saved game", "page", "3"}, {"", "ignored", "x"}, {"List Data", "0", "Key"}};
  EXPECT_TRUE(store.WriteINIKeys(save, keys));
  EXPECT_EQ(testing::FileBytes(save), "[List Data]\r\n2=Rope\r\n0=Key\r\n[saved game]\r\npage=3\r\n");
  EXPECT_FALSE(store.WriteINIKeys(dir.str() + "/missing/g.sav", keys));
  // Nothing to write touches nothing, not even a missing file.
  EXPECT_TRUE(store.WriteINIKeys(dir.str() + "/none.sav", {}));
  EXPECT_EQ(FilesIn(dir.str()), 2);  // the save and home
}

TEST_F(ProfileFiles, BareNamesLiveInTheUserFolderAndBackslashesAreFolders) {
  store.WriteINI("tmpquest.ini", "1", "Location", "Here");
  EXPECT_TRUE(std::filesystem::exists(home + "/tmpquest.ini"));
  EXPECT_EQ(store.ReadINI(home + "\\tmpquest.ini", "1", "Location"), "Here");
}

TEST_F(ProfileFiles, AWriteKeepsPermissionsAndLeavesNoTemporaryFile) {
  std::string quest = dir.str() + "/q.fbw";
  store.WriteINI(quest, "a", "k", "1");
  ::chmod(quest.c_str(), 0640);
  store.WriteINI(quest, "a", "k", "2");
  struct stat st;
  ASSERT_EQ(::stat(quest.c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0640u);
  EXPECT_EQ(FilesIn(dir.str()), 2);  // the quest and home
}

}  // namespace
}  // namespace fw
