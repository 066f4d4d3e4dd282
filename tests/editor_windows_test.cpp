// The battle and character windows beyond their scenarios: what only the
// file's bytes can tell.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "forms/controls.h"
#include "forms/program.h"
#include "forms/user_actions.h"
#include "shell/forms.h"
#include "store/program_store.h"
#include "test_program.h"

namespace fw {
namespace {

namespace fs = std::filesystem;

struct Editor {
  testing::TestProgram t{AllForms()};
  Editor() {
    t.program.Start();
    EXPECT_EQ(Do("FrmGame", "mnucreatequest", UserAction::Click), "");
  }
  std::string Do(const char* form, const char* control, UserAction action, std::string_view text = {},
                 int value = 0) {
    return Act(t.program, t.surface().Id(form, control), action, text, value);
  }
  fs::path Working() { return t.dir.path / "tmpquest.ini"; }
  void Load(const std::string& text) {
    fs::path quest = t.dir.path / "quest.fbw";
    std::ofstream(quest, std::ios::binary) << text;
    t.platform.dialogs.QueueFile("createquest.questfile", quest.string());
    EXPECT_EQ(Do("createquest", "mnuloadquest", UserAction::Click), "");
  }
  bool Loaded(const char* form) { return t.surface().IsLoaded(t.surface().FindForm(form)); }
};

constexpr const char* kBattleQuest =
    "[Quest Data]\r\nNumber Of Pages=2\r\n\r\n"
    "[1]\r\nBattle=1\r\nBattleMonName=Wolf\r\nBattleMonHp=9\r\nBattleEscapecheck=1\r\nATKMessage=Bite\r\n"
    "AltAtk=Howl\r\nAltAtkDam=2\r\nBattleWin=2\r\nBattleLose=1\r\nBattleEscape=1\r\nBattleMonKeyItem=Fang\r\n"
    "BattleMonExp=10\r\nBattleMonAtk=3\r\nBattleMonDef=1\r\nBattleMusic=m.mid\r\nBattleMp3=m.mp3\r\n"
    "BattleImage=\r\n\r\n"
    "[2]\r\nPage Text=After\r\n";

// A page read that fills the window's fields changes no byte of a page that
// has every key: the write-backs of what was just read are left out.
TEST(EditorBattleWindow, OpeningAndFollowingAFullPageLeaveTheFileAsItWas) {
  Editor e;
  e.Load(kBattleQuest);
  // The load's page read filled the window, unseen, and wrote nothing new.
  const std::string before = testing::FileBytes(e.Working());
  EXPECT_EQ(before, kBattleQuest);
  EXPECT_EQ(TextBox(e.t.surface(), "FrmBattle", "Text14").Text(), "2");
  e.t.platform.clock.Set(e.t.now() + 0.01);
  e.t.program.RunDue();
  ASSERT_EQ(e.Do("createquest", "Command7", UserAction::Click), "");
  EXPECT_EQ(TextBox(e.t.surface(), "FrmBattle", "Text13").Text(), "Howl");
  ASSERT_EQ(e.Do("createquest", "pg", UserAction::Choose, {}, 0), "");
  EXPECT_EQ(testing::FileBytes(e.Working()), before);
}

TEST(EditorCharacterWindow, OpeningOnAFreshFileWritesNothing) {
  Editor e;
  const std::string before = testing::FileBytes(e.Working());
  ASSERT_EQ(e.Do("createquest", "Command8", UserAction::Click), "");
  EXPECT_TRUE(e.Loaded("FrmCharCreate"));
  EXPECT_EQ(testing::FileBytes(e.Working()), before);
  // Nothing typed into the picture's box reaches the file.
  ASSERT_EQ(e.Do("FrmCharCreate", "Text5", UserAction::Type, "a.jpg"), "");
  EXPECT_EQ(testing::FileBytes(e.Working()), before);
}

}  // namespace
}  // namespace fw
