// The desktop window built from the form tables: widgets mirror the surface
// and the user's actions reach it.
#include <gtest/gtest.h>

#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QTest>

#include <fstream>

#include "shell/controls.h"
#include "shell/forms.h"
#include "shell/qt/qt_window.h"
#include "test_program.h"

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
  EXPECT_EQ(window->menuBar()->actions().size(), 3);

  std::string shots = std::string(FABLEWRIGHT_SOURCE_DIR) + "/build/";
  window->grab().save(QString::fromStdString(shots + "game-window-menu.png"));
  FormSurface& s = t.surface();
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

  auto* option = qobject_cast<QRadioButton*>(windows.WidgetOf(s.Id("FrmGame", "Option1")));
  ASSERT_NE(option, nullptr);
  EXPECT_EQ(option->text(), "Go");
  QTest::mouseClick(option, Qt::LeftButton, {}, QPoint(6, option->height() / 2));  // on its button
  EXPECT_TRUE(s.At(s.Id("FrmGame", "Option1")).optionValue);
  QTest::mouseClick(windows.WidgetOf(s.Id("FrmGame", "Picture1")), Qt::LeftButton);
  EXPECT_EQ(s.At(s.Id("FrmGame", "pg")).caption, "2");
  EXPECT_TRUE(transcript->toPlainText().endsWith("Done."));

  window->grab().save(QString::fromStdString(shots + "game-window.png"));
}

}  // namespace
}  // namespace fw
