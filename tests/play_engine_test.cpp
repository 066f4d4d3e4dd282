// The entries into a quest that no script reaches yet (the editor's test play,
// the Start image) and the page steps that differ by caller.
#include <gtest/gtest.h>

#include <fstream>

#include "forms/controls.h"
#include "play/game_start.h"
#include "play/game_state.h"
#include "play/page_view.h"
#include "play/show_page.h"
#include "play/start_quest.h"
#include "shell/forms.h"
#include "test_program.h"

namespace fw {
namespace {

// Writes a profile file with CR LF line breaks.
void WriteFile(const std::filesystem::path& path, std::string_view lines) {
  std::ofstream out(path, std::ios::binary);
  for (char c : lines) {
    if (c == '\n') out << '\r';
    out << c;
  }
}

constexpr std::string_view kQuest =
    "[Story Info]\nTitle=Test\n[CharacterData]\nCharCreateAllow=1\nCharName=Ann\n"
    "[1]\nLocation=Start\nPage Text=First page.\nMusic=tune.mid\nBattle=1\nHealChar=1\n"
    "Option One=Needs the lamp\nKey Item1=Lamp\nRequired1=1\n"
    "Option Two=Never offered\nAdd2=1\n";

class Engine : public ::testing::Test {
 protected:
  testing::TestProgram t{AllForms()};
  Program& p = t.program;
  GameState g{p};
  PictureBox Picture2{p.surface(), "FrmGame", "Picture2"};
  PictureBox CharCreate{p.surface(), "FrmGame", "CharCreate"};
  FormHandle form{p.surface(), "FrmGame"};

};

TEST_F(Engine, TestPlayRunsOnlyTheMediaStepsOfItsFirstPage) {
  WriteFile(t.dir.path / "tmpquest.ini", kQuest);
  g.List1.AddItem("Old item");
  g.Option2.SetValue(true);
  LoadTmpGame(p);
  EXPECT_EQ(g.questfil.Caption(), "tmpquest.ini");
  EXPECT_EQ(FileDialog(p.surface(), "FrmGame", "questfile").InitDir(), p.AppPath());
  EXPECT_EQ(g.List1.ListCount(), 0);
  EXPECT_EQ(g.Text1.Text(), "No Quest Loaded.\r\nTest\r\n" + std::string(53, '-') +
                                "\r\n\r\nVersion: \r\n" + std::string(53, '-') +
                                "\r\n\r\n>\r\nStart\r\n>\r\nFirst page.");
  // No gating, no clearing of the selection, no hiding of the menu.
  EXPECT_EQ(g.Option1.Caption(), "Needs the lamp");
  EXPECT_EQ(g.Option2.Caption(), "Never offered");
  EXPECT_TRUE(g.Option2.Value());
  EXPECT_TRUE(Picture2.Visible());
  EXPECT_FALSE(CharCreate.Visible());
  EXPECT_EQ(form.Height(), 6195);
  EXPECT_EQ(g.Music.Caption(), "tune.mid");
}

TEST_F(Engine, LoadAQuestFileOpensTheCharacterPanelWithTheExperienceBar) {
  WriteFile(t.dir.path / "q.fbw", kQuest);
  g.exp.SetValue(50);
  t.platform.dialogs.QueueFile("FrmGame.questfile", (t.dir.path / "q.fbw").string());
  frmgame::mnuloadquest_Click(p);
  EXPECT_TRUE(CharCreate.Visible());
  EXPECT_EQ(g.Text6.Text(), "Ann");
  EXPECT_TRUE(g.HPPlay.Visible());
  EXPECT_TRUE(g.exp.Visible());
  EXPECT_TRUE(Label(p.surface(), "FrmGame", "Label9").Visible());
  EXPECT_EQ(g.exp.Value(), 0);
  // Gating runs here: the lamp is not held, and an Add without item never shows.
  EXPECT_EQ(g.Option1.Caption(), "");
  EXPECT_EQ(g.Option2.Caption(), "");
  EXPECT_FALSE(Picture2.Visible());
}

TEST_F(Engine, HealingComesOnlyWithAChoice) {
  WriteFile(t.dir.path / "q.fbw", kQuest);
  g.questfil.SetCaption((t.dir.path / "q.fbw").string());
  g.HPPlay.SetValue(10);
  ShowPage(p, PageCaller::BattleOutcome);
  EXPECT_EQ(g.HPPlay.Value(), 10);
  EXPECT_FALSE(Picture2.Visible());
  Picture2.SetVisible(true);
  ShowPage(p, PageCaller::ChooseOption);
  EXPECT_EQ(g.HPPlay.Value(), 100);
  EXPECT_TRUE(Picture2.Visible());
}

// A game folder from elsewhere names files outside itself: the quest is
// then no packaged game's (the full system starts and nothing writes to it),
// and the pictures are not loaded.
TEST(PackagedGameFolder, ReachesNoFileOutsideIt) {
  testing::TempDir dir;
  namespace fs = std::filesystem;
  fs::path game = dir.path / "game", victim = dir.path / "victim";
  fs::create_directories(game);
  fs::create_directories(victim);
  WriteFile(victim / "v.fbw", kQuest);
  WriteFile(game / "q.fbw", kQuest);
  std::ofstream(victim / "art.gif", std::ios::binary) << "GIF89a";
  fs::create_symlink(victim / "v.fbw", game / "link.fbw");
  std::string before = testing::FileBytes(victim / "v.fbw");
  struct Case {
    std::string quest, picture;
  };
  const Case cases[] = {{"..\\victim\\v.fbw", ""},      {"../victim/v.fbw", ""},
                        {(victim / "v.fbw").string(), ""}, {"C:\\victim\\v.fbw", ""},
                        {"sub\\..\\..\\victim\\v.fbw", ""}, {"link.fbw", ""},
                        {"q.fbw", "..\\victim\\art.gif"},  {"q.fbw", (victim / "art.gif").string()}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.quest + " " + c.picture);
    WriteFile(game / "game.dat", "[Image]\nBackground=" + c.picture + "\nMenuButton=" + c.picture +
                                     "\n[loaddat]\nQuestFile=" + c.quest + "\n[Game Data]\nTitle=Packed\n");
    HeadlessPlatform platform;
    Program p(platform.services(), AppInfo{game.string(), "fablewright", game.string(), game.string()}, AllForms());
    p.Start();
    GameState g(p);
    bool packaged = c.quest == "q.fbw";
    EXPECT_EQ(g.questfil.Caption(), packaged ? game.string() + "\\q.fbw" : "No Quest Loaded.");
    EXPECT_EQ(Image(p.surface(), "FrmGame", "Image11").Visible(), packaged);
    EXPECT_EQ(Image(p.surface(), "FrmGame", "Image4").Picture().host.find("victim"), std::string::npos);
    EXPECT_EQ(p.surface().Form(FormHandle(p.surface(), "FrmGame").index()).picture.host.find("victim"),
              std::string::npos);
  }
  EXPECT_EQ(testing::FileBytes(victim / "v.fbw"), before);
}

class PackagedGame : public Engine {
 protected:
  void SetUp() override {
    WriteFile(t.dir.path / "q.fbw", kQuest);
    WriteFile(t.dir.path / "game.dat", "[loaddat]\nQuestFile=q.fbw\n[Game Data]\nTitle=Packed\n");
    p.Start();
  }
};

TEST_F(PackagedGame, TheStartImageStartsAgainWithoutTheCharacterPanel) {
  EXPECT_EQ(g.questfil.Caption(), p.AppPath() + "\\q.fbw");
  EXPECT_EQ(form.Caption(), "Packed");
  // Its first page offers nothing, and the File menu is hidden: the line in
  // the option area names the packaged game's way to start again.
  Label end(p.surface(), "FrmGame", "lblTheEnd");
  EXPECT_TRUE(end.Visible());
  EXPECT_EQ(end.Caption(), kTheEndPackaged);
  CharCreate.SetVisible(false);
  g.List1.AddItem("Lamp");
  form.SetHeight(5000);
  g.score.SetCaption("7");
  frmgame::Image11_Click(p);
  EXPECT_EQ(g.List1.ListCount(), 0);
  EXPECT_FALSE(CharCreate.Visible());
  EXPECT_EQ(form.Height(), 6600);
  EXPECT_EQ(g.score.Caption(), "0");
  EXPECT_NE(g.Text1.Text().find("Version: "), g.Text1.Text().rfind("Version: "));
  EXPECT_FALSE(Picture2.Visible());
}

}  // namespace
}  // namespace fw
