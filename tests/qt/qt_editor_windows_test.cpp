// The editor's battle and character windows and its test play, in the real
// window: built from their tables, reached by real mouse and key events,
// with a picture of each editor window for a person to look at.
#include <gtest/gtest.h>

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QTest>

#include "bindings/qt/qt_window.h"
#include "forms/controls.h"
#include "forms/user_actions.h"
#include "shell/forms.h"
#include "store/program_store.h"
#include "test_program.h"
#include "screenshots.h"

namespace fw {
namespace {

struct EditorWindows {
  testing::TestProgram t{AllForms()};
  QtWindows windows{t.program};
  EditorWindows() {
    t.surface().SetObserver(&windows);
    t.program.Start();
    EXPECT_EQ(Act(t.program, t.surface().Id("FrmGame", "mnucreatequest"), UserAction::Click), "");
  }
  QWidget* Widget(const char* form, const char* name) { return windows.WidgetOf(t.surface().Id(form, name)); }
  void Click(const char* form, const char* name) { QTest::mouseClick(Widget(form, name), Qt::LeftButton); }
  void Type(const char* form, const char* name, const char* text) { QTest::keyClicks(Widget(form, name), text); }
  void Wait(double seconds) {
    t.platform.clock.Set(t.now() + seconds);
    t.program.RunDue();
  }
  QMainWindow* Window(const char* form) { return windows.WindowOf(t.surface().FindForm(form)); }
  std::string Key(const char* section, const char* key) { return ReadINI(t.program, "tmpquest.ini", section, key); }
};

TEST(QtEditorWindows, BattleAndCharacterWindowsTakeTypingAndLookTheirPart) {
  EditorWindows e;
  e.Type("createquest", "Text1", "A bear blocks the ford.");
  e.Type("createquest", "Text19", "Ford");
  e.Type("createquest", "Text2", "Wade across");
  e.Type("createquest", "Text6", "2");
  e.Click("createquest", "Check9");
  e.Wait(0.01);
  // The mouse over a field shows its help.
  QTest::mouseMove(e.Widget("createquest", "Text6"));
  EXPECT_EQ(Label(e.t.surface(), "createquest", "info").Caption(),
            "The destination page for the option once clicked. Leave blank if no option is given.");
  testing::SaveScreenshot(e.Window("createquest"), "editor-page");

  e.Click("createquest", "Command7");
  QMainWindow* battle = e.Window("FrmBattle");
  ASSERT_NE(battle, nullptr);
  ASSERT_TRUE(battle->isVisible());
  EXPECT_EQ(battle->windowTitle(), "Battle Creation");
  auto* monster = qobject_cast<QGroupBox*>(e.Widget("FrmBattle", "Frame1"));
  ASSERT_NE(monster, nullptr);
  EXPECT_EQ(monster->title(), "Monster");
  EXPECT_EQ(e.Widget("FrmBattle", "Text1")->parentWidget(), monster);
  EXPECT_FALSE(e.Widget("FrmBattle", "Text14")->isVisible());
  e.Type("FrmBattle", "Text1", "Bear");
  e.Type("FrmBattle", "Text2", "40");
  e.Type("FrmBattle", "Text9", "2");
  e.Click("FrmBattle", "Check1");
  EXPECT_EQ(e.Key("1", "BattleMonName"), "Bear");
  EXPECT_EQ(e.Key("1", "BattleMonHp"), "40");
  EXPECT_EQ(e.Key("1", "BattleWin"), "2");
  EXPECT_EQ(e.Key("1", "BattleEscapecheck"), "1");
  testing::SaveScreenshot(battle, "editor-battle");

  // Closed by its window's close button, the window is destroyed.
  battle->close();
  EXPECT_FALSE(e.t.surface().IsLoaded(e.t.surface().FindForm("FrmBattle")));

  e.Click("createquest", "Command8");
  QMainWindow* character = e.Window("FrmCharCreate");
  ASSERT_NE(character, nullptr);
  EXPECT_EQ(character->windowTitle(), "Character Creation");
  e.Click("FrmCharCreate", "Check2");
  e.Type("FrmCharCreate", "Text1", "Wren");
  e.Type("FrmCharCreate", "Text2", "30");
  EXPECT_EQ(e.Key("CharacterData", "CharCreateAllow"), "1");
  EXPECT_EQ(e.Key("CharacterData", "CharName"), "Wren");
  EXPECT_EQ(e.Key("CharacterData", "CharHp"), "30");
  testing::SaveScreenshot(character, "editor-character");
}

TEST(QtEditorWindows, APageTypedIsPlayedAtOnceInThePlayerWindow) {
  EditorWindows e;
  e.Type("createquest", "Text1", "A gate in the wall.");
  e.Type("createquest", "Text2", "Knock");
  e.Type("createquest", "Text6", "2");
  e.Click("createquest", "Command1");
  qobject_cast<QListWidget*>(e.Widget("createquest", "pg"))->setCurrentRow(1);
  e.Type("createquest", "Text1", "The gate opens.");

  e.Click("createquest", "Command13");
  QMainWindow* game = e.Window("FrmGame");
  ASSERT_TRUE(game->isVisible());
  EXPECT_FALSE(e.Widget("FrmGame", "Picture2")->isVisible());
  auto* transcript = qobject_cast<QPlainTextEdit*>(e.Widget("FrmGame", "Text1"));
  EXPECT_TRUE(transcript->toPlainText().endsWith("A gate in the wall."));
  e.Wait(0.05);
  auto* option = qobject_cast<QRadioButton*>(e.Widget("FrmGame", "Option1"));
  ASSERT_TRUE(option->isVisible());
  EXPECT_EQ(option->text(), "Knock");
  QTest::mouseClick(option, Qt::LeftButton, {}, QPoint(6, option->height() / 2));
  e.Click("FrmGame", "Picture1");
  EXPECT_TRUE(transcript->toPlainText().endsWith("The gate opens."));
  EXPECT_TRUE(e.Window("createquest")->isVisible());
  testing::SaveScreenshot(game, "editor-test-play");
}

}  // namespace
}  // namespace fw
