// The short load, which no script reaches while the picture menu is hidden
// with a quest open, and the save's refusals and its keeping of old keys.
#include <gtest/gtest.h>

#include <fstream>

#include "play/game_state.h"
#include "play/saved_game.h"
#include "shell/forms.h"
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

TEST_F(SavedGames, ShortLoadRestoresThePageAlone) {
  Save();
  EXPECT_EQ(p.ReadINI(sav, "saved game", "HowMuchInList"), "3");
  EXPECT_EQ(p.ReadINI(sav, "List Data", "1"), "");
  EXPECT_EQ(p.ReadINI(sav, "List Data", "2"), "Rope");
  g.pg.SetCaption("9");
  g.score.SetCaption("0");
  g.HPPlay.SetValue(7);
  t.platform.dialogs.QueueFile("FrmGame.file", sav);
  frmgame::Image2_Click(p);
  EXPECT_EQ(g.pg.Caption(), "3");
  EXPECT_EQ(g.score.Caption(), "4");
  EXPECT_EQ(g.HPPlay.Value(), 7.0f);
  EXPECT_EQ(g.List1.ListCount(), 3);
  EXPECT_FALSE(PictureBox(p.surface(), "FrmGame", "Picture2").Visible());
}

TEST_F(SavedGames, ShorterSaveOverALongerOneKeepsTheHigherItems) {
  Save();
  g.List1.Clear();
  g.List1.AddItem("Key");
  Save();
  EXPECT_EQ(p.ReadINI(sav, "saved game", "HowMuchInList"), "1");
  EXPECT_EQ(p.ReadINI(sav, "List Data", "0"), "Key");
  EXPECT_EQ(p.ReadINI(sav, "List Data", "2"), "Rope");
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
