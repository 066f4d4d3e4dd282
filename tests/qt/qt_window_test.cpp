// The desktop window built from the form tables: widgets mirror the surface
// and the user's actions reach it.
#include <gtest/gtest.h>

#include <QDir>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QTest>

#include <fstream>

#include "bindings/qt/qt_window.h"
#include "forms/controls.h"
#include "shell/forms.h"
#include "test_program.h"
#include "screenshots.h"

namespace fw {
namespace {

TEST(QtWindows, BuildsTheGameWindowFromItsTableAndMirrorsBothWays) {
  testing::TempDir dir;
  std::ofstream(dir.str() + "/q.fbw") << "[Story Info]\r\nTitle=Caf\xE9 quest\r\n[1]\r\nPage Text=Start here.\r\n"
                                         "Option One=Go\r\nOption One Destination Page=2\r\n[2]\r\nPage Text=Done.\r\n";
  testing::TestProgram t{AllForms()};
  QtWindows windows(t.program);
  t.surface().SetObserver(&windows);
  t.program.Start();
  int game = t.surface().FindForm("FrmGame");
  QMainWindow* window = windows.WindowOf(game);
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(window->windowTitle(), "Fablewright 2004 - Beta 5.9");
  EXPECT_EQ(window->centralWidget()->width(), QtWindows::Px(8385));
  EXPECT_EQ(window->menuBar()->actions().size(), 4);

  FormSurface& s = t.surface();
  testing::SaveCheckedScreenshot(windows, s, game, "picture-menu-bare");
  t.platform.dialogs.QueueFile("FrmGame.questfile", dir.str() + "/q.fbw");
  QWidget* load = windows.WidgetOf(s.Id("FrmGame", "Image1"));
  QTest::mouseClick(load, Qt::LeftButton);
  t.platform.clock.Set(t.now() + 0.05);
  t.program.RunDue();
  auto* transcript = qobject_cast<QPlainTextEdit*>(windows.WidgetOf(s.Id("FrmGame", "Text1")));
  ASSERT_NE(transcript, nullptr);
  EXPECT_TRUE(transcript->toPlainText().contains(QString::fromUtf8("Caf\xC3\xA9 quest\n")));
  EXPECT_FALSE(windows.WidgetOf(s.Id("FrmGame", "Picture2"))->isVisible() &&
               s.At(s.Id("FrmGame", "Picture2")).visible);
  testing::SaveCheckedScreenshot(windows, s, game, "page");

  auto* option = qobject_cast<QRadioButton*>(windows.WidgetOf(s.Id("FrmGame", "Option1")));
  ASSERT_NE(option, nullptr);
  EXPECT_EQ(option->text(), "Go");
  QTest::mouseClick(option, Qt::LeftButton, {}, QPoint(6, option->height() / 2));  // on its button
  EXPECT_TRUE(s.At(s.Id("FrmGame", "Option1")).optionValue);
  QTest::mouseClick(windows.WidgetOf(s.Id("FrmGame", "Picture1")), Qt::LeftButton);
  EXPECT_EQ(s.At(s.Id("FrmGame", "pg")).caption, "2");
  EXPECT_TRUE(transcript->toPlainText().endsWith("Done."));

  // Timer1 takes away the options without captions at its next tick.
  t.platform.clock.Set(t.now() + 0.05);
  t.program.RunDue();
  EXPECT_FALSE(option->isVisible());
  testing::SaveCheckedScreenshot(windows, s, game, "page-without-options");

  // Game > Undo, on Ctrl+Z, takes the choice back.
  QMenu* gameMenu = window->menuBar()->actions()[1]->menu();
  ASSERT_NE(gameMenu, nullptr);
  QAction* undo = gameMenu->actions()[0];
  EXPECT_EQ(undo->text(), "&Undo");
  EXPECT_EQ(undo->shortcut(), QKeySequence(QKeySequence::Undo));
  ASSERT_TRUE(undo->isEnabled());
  gameMenu->popup(window->mapToGlobal(QPoint(0, 0)));
  testing::SaveScreenshot(gameMenu, "game-menu");
  gameMenu->hide();
  undo->trigger();
  EXPECT_EQ(s.At(s.Id("FrmGame", "pg")).caption, "1");
  EXPECT_TRUE(transcript->toPlainText().endsWith("(Undone.)"));
  EXPECT_FALSE(undo->isEnabled());
}

// The character panel, a fight and the inventory through the window's own
// widgets, with a picture of each for a person to look at.
TEST(QtWindows, CharacterPanelBattleAndInventory) {
  testing::TempDir dir;
  std::ofstream(dir.str() + "/q.fbw")
      << "[CharacterData]\r\nCharCreateAllow=1\r\nCharName=Ana\r\n"
         "[1]\r\nPage Text=A rat.\r\nOption One=Fight\r\nOption One Destination Page=2\r\n"
         "[2]\r\nPage Text=It bites.\r\nBattle=1\r\nBattleMonName=Rat\r\nBattleMonHp=1\r\nBattleMonAtk=0\r\n"
         "BattleMonKeyItem=Rat tail\r\nBattleWin=3\r\n[3]\r\nPage Text=Quiet.\r\n";
  testing::TestProgram t{AllForms()};
  QtWindows windows(t.program);
  t.surface().SetObserver(&windows);
  t.program.Start();
  FormSurface& s = t.surface();
  int game = s.FindForm("FrmGame");
  auto click = [&](const char* name) { QTest::mouseClick(windows.WidgetOf(s.Id("FrmGame", name)), Qt::LeftButton); };
  auto pass = [&](double seconds) {
    t.platform.clock.Set(t.now() + seconds);
    t.program.RunDue();
  };

  t.platform.dialogs.QueueFile("FrmGame.questfile", dir.str() + "/q.fbw");
  click("Image1");
  pass(0.01);
  EXPECT_TRUE(windows.WidgetOf(s.Id("FrmGame", "Command9"))->isEnabled());
  testing::SaveCheckedScreenshot(windows, s, game, "character");
  click("Command9");
  EXPECT_FALSE(windows.WidgetOf(s.Id("FrmGame", "CharCreate"))->isVisible());

  pass(0.05);
  auto* option = qobject_cast<QRadioButton*>(windows.WidgetOf(s.Id("FrmGame", "Option1")));
  QTest::mouseClick(option, Qt::LeftButton, {}, QPoint(6, option->height() / 2));
  click("Picture1");
  ASSERT_TRUE(windows.WidgetOf(s.Id("FrmGame", "BattleBox"))->isVisible());
  testing::SaveCheckedScreenshot(windows, s, game, "battle");
  for (int round = 0; round < 20 && s.At(s.Id("FrmGame", "BattleBox")).visible; ++round) click("Picture7");
  EXPECT_EQ(s.At(s.Id("FrmGame", "pg")).caption, "3");
  EXPECT_FALSE(windows.WidgetOf(s.Id("FrmGame", "BattleBox"))->isVisible());

  click("Picture3");
  EXPECT_TRUE(windows.WidgetOf(s.Id("FrmGame", "InvBox"))->isVisible());
  testing::SaveCheckedScreenshot(windows, s, game, "inventory");
  click("Picture6");
  EXPECT_FALSE(windows.WidgetOf(s.Id("FrmGame", "InvBox"))->isVisible());
}

// Closing the window and File > Exit each end the program, so the desktop's
// event loop stops instead of running on behind a hidden window.
TEST(QtWindows, ClosingTheWindowOrExitEndsTheProgram) {
  for (bool byMenu : {false, true}) {
    testing::TestProgram t{AllForms()};
    QtWindows windows(t.program);
    t.surface().SetObserver(&windows);
    t.program.Start();
    QMainWindow* window = windows.WindowOf(t.surface().FindForm("FrmGame"));
    ASSERT_NE(window, nullptr);
    ASSERT_FALSE(t.program.Over());
    if (byMenu) {
      QAction* exit = nullptr;
      for (QAction* menu : window->menuBar()->actions())
        for (QAction* item : menu->menu()->actions())
          if (item->text() == "&Exit") exit = item;
      ASSERT_NE(exit, nullptr);
      exit->trigger();
    } else {
      window->close();
    }
    EXPECT_TRUE(t.program.Over()) << (byMenu ? "File > Exit" : "closing the window");
  }
}

}  // namespace
}  // namespace fw
