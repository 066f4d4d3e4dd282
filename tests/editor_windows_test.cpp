// The battle and character windows and the editor's help, beyond their
// scenarios: what only the file's bytes and the handler tables can tell.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
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

std::string ReadAll(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

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
  const std::string before = ReadAll(e.Working());
  EXPECT_EQ(before, kBattleQuest);
  EXPECT_EQ(TextBox(e.t.surface(), "FrmBattle", "Text14").Text(), "2");
  e.t.platform.clock.Set(e.t.now() + 0.01);
  e.t.program.RunDue();
  ASSERT_EQ(e.Do("createquest", "Command7", UserAction::Click), "");
  EXPECT_EQ(TextBox(e.t.surface(), "FrmBattle", "Text13").Text(), "Howl");
  ASSERT_EQ(e.Do("createquest", "pg", UserAction::Choose, {}, 0), "");
  EXPECT_EQ(ReadAll(e.Working()), before);
}

TEST(EditorCharacterWindow, OpeningOnAFreshFileWritesNothing) {
  Editor e;
  const std::string before = ReadAll(e.Working());
  ASSERT_EQ(e.Do("createquest", "Command8", UserAction::Click), "");
  EXPECT_TRUE(e.Loaded("FrmCharCreate"));
  EXPECT_EQ(ReadAll(e.Working()), before);
  // Nothing typed into the picture's box reaches the file.
  ASSERT_EQ(e.Do("FrmCharCreate", "Text5", UserAction::Type, "a.jpg"), "");
  EXPECT_EQ(ReadAll(e.Working()), before);
}

// Every field of the help table answers a mouse move, and only those: the
// pickers, the window buttons and the labels leave info alone.
TEST(EditorHelp, TheHelpTableCoversItsFieldsAndNoOthers) {
  Editor e;
  FormSurface& s = e.t.surface();
  int form = s.FindForm("createquest");
  std::set<std::string> helped;
  for (const ControlDecl& d : s.Table(form).controls)
    if (s.Answers(s.Id("createquest", d.name), Event::MouseMove)) helped.insert(d.name);
  std::set<std::string> expected = {"pg", "Text13", "Command1", "Command2", "filepath", "Command4", "Command5",
                                    "Command11", "Command12"};
  for (int n : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26})
    expected.insert("Text" + std::to_string(n));
  for (int n = 1; n <= 8; ++n) expected.insert("Check" + std::to_string(n));
  EXPECT_EQ(helped, expected);
}

}  // namespace
}  // namespace fw
