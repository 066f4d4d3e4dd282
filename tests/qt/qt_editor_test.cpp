// The quest editor's window, built from its table alone: a page typed with
// real key events reaches the working file key by key.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

#include <filesystem>
#include <fstream>

#include "bindings/qt/qt_window.h"
#include "forms/controls.h"
#include "forms/user_actions.h"
#include "shell/forms.h"
#include "store/program_store.h"
#include "test_program.h"
#include "screenshots.h"

namespace fw {
namespace {

TEST(QtEditor, APageTypedInTheWindowIsInTheWorkingFile) {
  testing::TestProgram t{AllForms()};
  QtWindows windows(t.program);
  t.surface().SetObserver(&windows);
  t.program.Start();
  FormSurface& s = t.surface();
  ASSERT_EQ(Act(t.program, s.Id("FrmGame", "mnucreatequest"), UserAction::Click), "");
  QMainWindow* window = windows.WindowOf(s.FindForm("createquest"));
  ASSERT_NE(window, nullptr);
  ASSERT_TRUE(window->isVisible());
  EXPECT_EQ(window->windowTitle(), "Create 'A' Quest");
  auto widget = [&](const char* name) { return windows.WidgetOf(s.Id("createquest", name)); };
  auto key = [&](const char* section, const char* name) { return ReadINI(t.program, "tmpquest.ini", section, name); };

  auto* text = qobject_cast<QPlainTextEdit*>(widget("Text1"));
  ASSERT_NE(text, nullptr);
  QTest::keyClicks(text, "The gate");
  EXPECT_EQ(key("1", "Page Text"), "The gate");
  QTest::keyClicks(text, " is shut.");
  EXPECT_EQ(key("1", "Page Text"), "The gate is shut.");
  EXPECT_EQ(text->textCursor().position(), text->toPlainText().size());

  QTest::keyClicks(widget("Text2"), "Knock");
  QTest::keyClicks(widget("Text6"), "2");
  QTest::keyClicks(widget("Text17"), "12345");  // a score box takes three
  QTest::keyClicks(widget("Text21"), "Key");
  QTest::keyClicks(widget("Text19"), "Gate");
  QTest::keyClicks(widget("Text10"), "Gatehouse");
  EXPECT_EQ(key("1", "Option One"), "Knock");
  EXPECT_EQ(key("1", "Option One Destination Page"), "2");
  EXPECT_EQ(key("1", "Option One Score"), "123");
  EXPECT_EQ(qobject_cast<QPlainTextEdit*>(widget("Text17"))->toPlainText(), "123");
  EXPECT_EQ(key("1", "Key Item1"), "Key");
  EXPECT_EQ(key("1", "Location"), "Gate");
  EXPECT_EQ(key("Story Info", "Title"), "Gatehouse");

  QTest::mouseClick(widget("Check1"), Qt::LeftButton);
  EXPECT_EQ(key("1", "Add1"), "1");
  QTest::mouseClick(widget("Check9"), Qt::LeftButton);
  t.platform.clock.Set(t.now() + 0.01);
  t.program.RunDue();
  EXPECT_TRUE(widget("Command7")->isEnabled());

  // A second page: added, chosen in the list, typed.
  QTest::mouseClick(widget("Command1"), Qt::LeftButton);
  auto* pages = qobject_cast<QListWidget*>(widget("pg"));
  ASSERT_EQ(pages->count(), 2);
  pages->setCurrentRow(1);
  EXPECT_EQ(text->toPlainText(), "");
  EXPECT_FALSE(qobject_cast<QCheckBox*>(widget("Check1"))->isChecked());
  QTest::keyClicks(text, "Inside.");
  EXPECT_EQ(key("2", "Page Text"), "Inside.");
  EXPECT_EQ(key("1", "Page Text"), "The gate is shut.");
  EXPECT_EQ(key("Quest Data", "Number Of Pages"), "2");

  pages->setCurrentRow(0);
  testing::SaveScreenshot(window, "editor");
  EXPECT_EQ(text->toPlainText(), "The gate is shut.");
}

// The page list widget keeps up with every way the list changes: Load
// growing and trimming it, Add Page, an entry taken out anywhere, New.
TEST(QtEditor, ThePageListWidgetFollowsTheList) {
  testing::TestProgram t{AllForms()};
  QtWindows windows(t.program);
  t.surface().SetObserver(&windows);
  t.program.Start();
  FormSurface& s = t.surface();
  std::ofstream(t.dir.str() + "/five.fbw") << "[Quest Data]\r\nNumber Of Pages=5\r\n";
  std::ofstream(t.dir.str() + "/two.fbw") << "[Quest Data]\r\nNumber Of Pages=2\r\n";
  ASSERT_EQ(Act(t.program, s.Id("FrmGame", "mnucreatequest"), UserAction::Click), "");
  auto* widget = qobject_cast<QListWidget*>(windows.WidgetOf(s.Id("createquest", "pg")));
  ListBox pg(s, "createquest", "pg");
  auto rows = [&] {
    std::string all;
    for (int i = 0; i < widget->count(); ++i) all += widget->item(i)->text().toStdString() + ",";
    std::string want;
    for (int i = 0; i < pg.ListCount(); ++i) want += pg.List(i) + ",";
    EXPECT_EQ(all, want);
    return all;
  };
  auto load = [&](const char* name) {
    t.platform.dialogs.QueueFile("createquest.questfile", t.dir.str() + "/" + name);
    ASSERT_EQ(Act(t.program, s.Id("createquest", "mnuloadquest"), UserAction::Click), "");
  };
  load("five.fbw");
  EXPECT_EQ(rows(), "1,2,3,4,5,");
  load("two.fbw");
  EXPECT_EQ(rows(), "1,2,");
  QTest::keyClicks(windows.WidgetOf(s.Id("createquest", "Text13")), "1");
  QTest::mouseClick(windows.WidgetOf(s.Id("createquest", "Command1")), Qt::LeftButton);
  QTest::keyClicks(windows.WidgetOf(s.Id("createquest", "Text13")), "1");
  QTest::mouseClick(windows.WidgetOf(s.Id("createquest", "Command1")), Qt::LeftButton);
  EXPECT_EQ(rows(), "1,2,1,1,");
  t.program.RunEvent([&] { pg.RemoveItem(0); });
  EXPECT_EQ(rows(), "2,1,1,");
  t.program.RunEvent([&] { pg.RemoveItem(1); });
  EXPECT_EQ(rows(), "2,1,");
  t.platform.dialogs.QueueAnswer(6);
  ASSERT_EQ(Act(t.program, s.Id("createquest", "mnunew"), UserAction::Click), "");
  EXPECT_EQ(rows(), "");
}

}  // namespace
}  // namespace fw
