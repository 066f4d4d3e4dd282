// The save's refusals, and the worked example of the record format byte for byte.
#include <gtest/gtest.h>

#include <fstream>

#include "play/game_state.h"
#include "play/character.h"
#include "play/saved_game.h"
#include "shell/forms.h"
#include "store/scrambler.h"
#include "test_program.h"

namespace fw {
namespace {

class SavedGames : public ::testing::Test {
 protected:
  testing::TestProgram t{AllForms()};
  Program& p = t.program;
  GameState g{p};
  std::string sav = (t.dir.path / "game.sav").string();

  void SetUp() override {
    std::string quest = (t.dir.path / "q.fbw").string();
    std::ofstream(quest) << "[CharacterData]\r\nCharCreateAllow=1\r\n[3]\r\nPage Text=Three.\r\n";
    g.questfil.SetCaption(quest);
    g.pg.SetCaption("3");
    g.room.SetText("Three.");
    g.Option1.SetCaption("On");
    g.score.SetCaption("4");
    g.Text5.SetText("40");
    g.HPPlay.SetMax(40);
    g.HPPlay.SetValue(40);
    g.List1.AddItem("Lamp");
    g.List1.AddItem("");
    g.List1.AddItem("Rope");
  }
  void Save() {
    t.platform.dialogs.QueueFile("FrmGame.file", sav);
    frmgame::mnusave_Click(p);
  }
};

TEST_F(SavedGames, SaveThatCannotBeWrittenSaysSoAndWritesNoEntry) {
  sav = (t.dir.path / "no such folder" / "game.sav").string();
  std::string before = g.Text1.Text();
  Save();
  ASSERT_EQ(t.platform.dialogs.unchecked().size(), 1u);
  EXPECT_EQ(t.platform.dialogs.unchecked().front().prompt, "The saved game " + sav + " could not be written.");
  EXPECT_EQ(t.platform.dialogs.unchecked().front().style, 16);
  EXPECT_EQ(g.Text1.Text(), before);
}

TEST_F(SavedGames, NameTypedWithoutExtensionGetsTheSaveExtension) {
  std::string typed = (t.dir.path / "my.games" / "mine").string();
  std::filesystem::create_directories(t.dir.path / "my.games");
  sav = typed;
  Save();
  EXPECT_TRUE(std::filesystem::exists(typed + ".sav"));
  EXPECT_FALSE(std::filesystem::exists(typed));
  EXPECT_TRUE(g.Text1.Text().find("Game: " + typed + ".sav\r\n") != std::string::npos);
}

TEST_F(SavedGames, ValueThatCannotBeScrambledWritesNothing) {
  g.Option2.SetCaption(std::string("Bad\x02", 4));
  Save();
  ASSERT_EQ(t.platform.dialogs.unchecked().size(), 1u);
  EXPECT_EQ(t.platform.dialogs.unchecked().front().prompt,
            "The game cannot be saved: the value of option 2 holds a character that cannot be stored.");
  EXPECT_FALSE(std::filesystem::exists(sav));
}

}  // namespace
}  // namespace fw

namespace fw {
namespace {

TEST(SavedGameFile, WorkedExampleByteForByte) {
  testing::TestProgram t{AllForms()};
  Program& p = t.program;
  GameState g{p};
  std::string quest = (t.dir.path / "q.fbw").string(), sav = (t.dir.path / "cave.sav").string();
  std::ofstream(quest) << "[7]\r\nPage Text=A dark cave.\r\n";
  g.questfil.SetCaption(quest);
  g.pg.SetCaption("7");
  g.score.SetCaption("12");
  g.room.SetText("A dark cave.");
  g.Option1.SetCaption("Go north");
  g.Option2.SetCaption("Go back");
  g.Text6.SetText("Thera");
  g.Text5.SetText("33");
  g.Text4.SetText("15");
  g.Text3.SetText("14");
  g.Text7.SetText("1");
  g.List1.AddItem("Rusty Key");
  g.List1.AddItem("Map");
  t.platform.dialogs.QueueFile("FrmGame.file", sav);
  frmgame::mnusave_Click(p);
  std::string bytes = testing::FileBytes(sav);
  EXPECT_EQ(bytes,
            "[saved game]\r\nroom==\x1c`]ng\x1c_]ra*\r\noption 1=Ck\x1cjknpd\r\noption 2=Ck\x1c^]_g\r\n"
            "option 3=\r\noption 4=\r\npage=3\r\nPoo=-.\r\nHowMuchInList=2\r\n"
            "[CharacterData]\r\nCharName=Pdan]\r\nCharHp=//\r\nCharAtk=-1\r\nCharDef=-0\r\nCharLevel=-\r\n"
            "[List Data]\r\n0=Rusty Key\r\n1=Map\r\n");
}

// A sound page with a damaged character: the picture menu's load reads no
// character and restores the page; the full load refuses the file, as it
// needs hit points to fill the gauge.
TEST(SavedGameFile, ADamagedCharacterKeepsOnlyTheFullLoadOut) {
  const char* refusal =
      "The file does not appear to be a saved game for this particular game or there is an error in the file.";
  const std::string damaged[] = {std::string("\xFC\xFF"),  // codes no decoding can take
                                 Encode("lots"),            // hit points that are no number
                                 ""};                      // a whole character missing is no damage
  for (const std::string& hp : damaged) {
    SCOPED_TRACE(hp);
    testing::TestProgram t{AllForms()};
    Program& p = t.program;
    GameState g{p};
    std::string quest = (t.dir.path / "q.fbw").string(), sav = (t.dir.path / "game.sav").string();
    std::ofstream(quest) << "[1]\r\nPage Text=One.\r\n";
    std::ofstream(sav, std::ios::binary) << "[saved game]\r\nroom=" << Encode("A dark cave.") << "\r\noption 1="
                                         << Encode("Go north") << "\r\npage=" << Encode("7") << "\r\nPoo="
                                         << Encode("12") << "\r\n[CharacterData]\r\nCharHp=" << hp << "\r\n";
    g.questfil.SetCaption(quest);
    t.platform.dialogs.QueueFile("FrmGame.file", sav);
    frmgame::Image2_Click(p);
    EXPECT_TRUE(t.platform.dialogs.unchecked().empty());
    EXPECT_EQ(g.room.Text(), "A dark cave.");
    EXPECT_EQ(g.Option1.Caption(), "Go north");
    EXPECT_EQ(g.pg.Caption(), "7");
    EXPECT_EQ(g.score.Caption(), "12");

    t.platform.dialogs.QueueFile("FrmGame.file", sav);
    frmgame::mnuload_Click(p);
    bool refused = !t.platform.dialogs.unchecked().empty();
    EXPECT_EQ(refused, !hp.empty());
    if (refused) {
      EXPECT_EQ(t.platform.dialogs.unchecked().front().prompt, refusal);
    }
  }
}

// A count too large for any list (or any integer) reads as no count at all.
TEST(SavedGameFile, AHugeItemCountReadsTheItemsUpToTheFirstBlank) {
  testing::TestProgram t{AllForms()};
  std::string sav = (t.dir.path / "huge.sav").string();
  std::ofstream(sav, std::ios::binary) << "[saved game]\r\nroom==\x1c`]ng\x1c_]ra*\r\nHowMuchInList=1e300\r\n"
                                          "[List Data]\r\n-1=Ghost\r\n0=Lamp\r\n1=Rope\r\n3=Far\r\n";
  std::optional<SavedGame> g = ReadSavedGame(t.program, sav);
  ASSERT_TRUE(g);
  EXPECT_EQ(g->room, "A dark cave.");
  EXPECT_EQ(g->items, (std::vector<std::string>{"Lamp", "Rope"}));
}

}  // namespace
}  // namespace fw

namespace fw {
namespace {

// A downloaded saved game or character file whose values decode to several
// lines: only the first line of each reaches the player's quest, so the file
// cannot add keys or pages to it.
TEST(DownloadedValues, ALineBreakInADecodedValueCutsItBeforeItReachesTheQuest) {
  testing::TestProgram t{AllForms()};
  Program& p = t.program;
  GameState g{p};
  std::string quest = (t.dir.path / "q.fbw").string();
  std::ofstream(quest, std::ios::binary) << "[CharacterData]\r\nCharCreateAllow=1\r\n[1]\r\nPage Text=One.\r\n";
  g.questfil.SetCaption(quest);
  g.pg.SetCaption("1");
  auto expectQuest = [&](const std::string& character) {
    std::string text = testing::FileBytes(quest);
    EXPECT_EQ(text, "[CharacterData]\r\nCharCreateAllow=1\r\n" + character + "[1]\r\nPage Text=One.\r\n");
  };

  std::string name = "Eve\r\n[1]\r\nPage Text=Stolen";
  std::string cha = (t.dir.path / "eve.cha").string();
  std::ofstream(cha, std::ios::binary) << "[CharacterData]\r\nCharName=" << Encode(name) << "\r\nCharHp=" << Encode("30")
                                       << "\r\nCharAtk=" << Encode("12\rCharHp=999") << "\r\nCharDef=" << Encode("9")
                                       << "\r\nCharLevel=" << Encode("2\nBattle=1") << "\r\n";
  t.platform.dialogs.QueueFile("FrmGame.charfile", cha);
  frmgame::Command11_Click(p);
  EXPECT_EQ(g.Text6.Text(), name);  // the panel shows what the file holds
  frmgame::Command9_Click(p);
  expectQuest("CharName=Eve\r\nCharHp=30\r\nCharAtk=12\r\nCharDef=9\r\nCharLevel=2\r\n");

  std::string sav = (t.dir.path / "game.sav").string();
  std::ofstream(sav, std::ios::binary) << "[saved game]\r\nroom=" << Encode("One.") << "\r\npage=" << Encode("1")
                                       << "\r\nPoo=" << Encode("0") << "\r\nHowMuchInList=0\r\n[CharacterData]\r\nCharName="
                                       << Encode("Ann\n[Story Info]\nTitle=Mine") << "\r\nCharHp=" << Encode("25")
                                       << "\r\nCharAtk=" << Encode("8") << "\r\nCharDef=" << Encode("7\r8")
                                       << "\r\nCharLevel=" << Encode("1") << "\r\n";
  t.platform.dialogs.QueueFile("FrmGame.file", sav);
  frmgame::mnuload_Click(p);
  expectQuest("CharName=Ann\r\nCharHp=25\r\nCharAtk=8\r\nCharDef=7\r\nCharLevel=1\r\n");
}

}  // namespace
}  // namespace fw
