// The packager's window, built from its table alone: the directory list
// shows the folders of its Path and a user's double click moves it.
#include <gtest/gtest.h>

#include <QListWidget>
#include <QMainWindow>
#include <QTest>

#include <filesystem>

#include "bindings/qt/qt_window.h"
#include "forms/controls.h"
#include "forms/user_actions.h"
#include "screenshots.h"
#include "shell/forms.h"
#include "test_program.h"

namespace fw {
namespace {

namespace fs = std::filesystem;

TEST(QtPackager, TheDirectoryListShowsItsFoldersAndAnActivatedOneBecomesItsPath) {
  testing::TestProgram t{AllForms()};
  fs::create_directories(t.dir.path / "games" / "Crypt");
  fs::create_directories(t.dir.path / "games" / "Attic");
  QtWindows windows(t.program);
  t.surface().SetObserver(&windows);
  t.program.Start();
  FormSurface& s = t.surface();
  FormHandle(s, "FrmCompile").Show();
  QMainWindow* window = windows.WindowOf(s.FindForm("FrmCompile"));
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(window->windowTitle(), "Compile");
  ControlId dir1 = s.Id("FrmCompile", "Dir1");
  auto* list = qobject_cast<QListWidget*>(windows.WidgetOf(dir1));
  ASSERT_NE(list, nullptr);
  ASSERT_EQ(Act(t.program, dir1, UserAction::Type, t.dir.str() + "/games"), "");
  ASSERT_EQ(list->count(), 4);
  EXPECT_EQ(list->item(0)->text(), QString::fromStdString(t.dir.str() + "/games"));
  EXPECT_EQ(list->item(1)->text(), "..");
  EXPECT_EQ(list->item(2)->text(), "Attic");
  EXPECT_EQ(list->item(3)->text(), "Crypt");
  testing::SaveScreenshot(window, "packager");

  emit list->itemActivated(list->item(3));
  EXPECT_EQ(DirListBox(s, "FrmCompile", "Dir1").Path(), t.dir.str() + "/games/Crypt");
  EXPECT_EQ(list->count(), 2);  // itself and the way up
  emit list->itemActivated(list->item(1));
  EXPECT_EQ(DirListBox(s, "FrmCompile", "Dir1").Path(), t.dir.str() + "/games");

  // A folder the program makes shows after its Refresh.
  fs::create_directories(t.dir.path / "games" / "Barn");
  DirListBox(s, "FrmCompile", "Dir1").Refresh();
  EXPECT_EQ(list->count(), 5);
}

}  // namespace
}  // namespace fw
