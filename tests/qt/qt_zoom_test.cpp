// The game window at another zoom: every control where the zoom puts it,
// fonts and pictures with it, and the program still in twips.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QToolTip>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <functional>
#include <vector>

#include "bindings/qt/qt_desktop.h"
#include "bindings/qt/qt_window.h"
#include "shell/forms.h"
#include "test_program.h"
#include "screenshots.h"

namespace fw {
namespace {

int At(double zoom, float twips) { return static_cast<int>(twips / 15.0 * zoom + 0.5); }

struct ZoomedGame {
  testing::TestProgram t{AllForms()};
  QtWindows windows{t.program};
  int form;
  ZoomedGame() {
    t.surface().SetObserver(&windows);
    t.program.Start();
    form = t.surface().FindForm("FrmGame");
  }
  QMainWindow* Window() { return windows.WindowOf(form); }
  void Key(Qt::Key key) { QTest::keyClick(Window(), key, Qt::ControlModifier); }
  // Every control that has a widget stands where the zoom puts its twips.
  void ExpectEveryControlAt(double zoom) { ExpectEveryControlAt(form, zoom); }
  void ExpectEveryControlAt(int form, double zoom) {
    FormSurface& s = t.surface();
    const FormDecl& table = s.Table(form);
    for (int i = 0; i < static_cast<int>(table.controls.size()); ++i) {
      QWidget* w = windows.WidgetOf({form, i});
      if (!w) continue;
      const Control& c = s.At({form, i});
      EXPECT_EQ(w->geometry(), QRect(At(zoom, c.left), At(zoom, c.top), At(zoom, c.width), At(zoom, c.height)))
          << table.controls[i].name << " at " << zoom;
    }
    EXPECT_EQ(windows.WindowOf(form)->centralWidget()->size(),
              QSize(At(zoom, s.Form(form).width), At(zoom, s.Form(form).height)));
  }
};

// Ctrl+Plus steps up to the largest step at which the window fits its
// screen's available area, frame and menu bar included, and there beeps and
// says so; Ctrl+Minus steps down to 100%. Every control stands where the
// zoom puts its twips, and the program keeps twips.
TEST(QtZoom, CtrlPlusStepsUpAsFarAsTheScreenHoldsTheWindow) {
  ZoomedGame g;
  testing::TempDir dir;
  std::ofstream(dir.str() + "/q.fbw") << "[1]\r\nPage Text=Two ways.\r\nOption One=Left\r\nOption Two=Right\r\n";
  g.t.platform.dialogs.QueueFile("FrmGame.questfile", dir.str() + "/q.fbw");
  QTest::mouseClick(g.windows.WidgetOf(g.t.surface().Id("FrmGame", "Image1")), Qt::LeftButton);
  g.t.platform.clock.Set(g.t.now() + 0.02);
  g.t.program.RunDue();

  double start = g.windows.Zoom(g.form);
  g.Key(Qt::Key_0);
  EXPECT_EQ(g.windows.Zoom(g.form), start);
  while (g.windows.Zoom(g.form) > 1.0) g.Key(Qt::Key_Minus);
  g.Key(Qt::Key_Minus);
  EXPECT_EQ(g.windows.Zoom(g.form), 1.0) << "nothing below 100%";
  EXPECT_EQ(QToolTip::text(), "100% is the smallest zoom.");
  g.ExpectEveryControlAt(1.0);
  g.Key(Qt::Key_Equal);  // Ctrl+= is Ctrl+Plus without Shift
  EXPECT_EQ(g.windows.Zoom(g.form), 1.25);

  QRect room = g.Window()->screen()->availableGeometry();
  for (double last = 0; last != g.windows.Zoom(g.form);) {
    last = g.windows.Zoom(g.form);
    g.Key(Qt::Key_Plus);
    EXPECT_TRUE(room.contains(g.Window()->frameGeometry())) << "at " << g.windows.Zoom(g.form);
  }
  double largest = g.windows.Zoom(g.form);
  EXPECT_GE(largest, start);
  EXPECT_EQ(QToolTip::text(), "A larger zoom would not fit on the screen.");
  g.ExpectEveryControlAt(largest);
  // The next step, set all the same, would not have fitted.
  constexpr double kSteps[] = {1.0, 1.25, 1.5, 2.0, 2.5, 3.0, 4.0};
  const double* next = std::upper_bound(std::begin(kSteps), std::end(kSteps), largest);
  ASSERT_NE(next, std::end(kSteps));
  g.windows.SetZoom(g.form, *next);
  QSize grown = g.Window()->frameGeometry().size();
  EXPECT_TRUE(grown.width() > room.width() || grown.height() > room.height()) << grown.width() << "x" << grown.height();
  g.Key(Qt::Key_0);
  EXPECT_EQ(g.windows.Zoom(g.form), start);
}

// At 200%, set whatever the screen: fonts and pictures grow, a press moves a
// button by its 50 twips at the zoom, and the picture menu is laid out alike.
TEST(QtZoom, AtTwoHundredPercentEveryControlStandsWhereTheZoomPutsIt) {
  ZoomedGame g;
  testing::TempDir dir;
  std::ofstream(dir.str() + "/q.fbw") << "[1]\r\nPage Text=Two ways.\r\nOption One=Left\r\nOption Two=Right\r\n";
  g.t.platform.dialogs.QueueFile("FrmGame.questfile", dir.str() + "/q.fbw");
  QTest::mouseClick(g.windows.WidgetOf(g.t.surface().Id("FrmGame", "Image1")), Qt::LeftButton);
  g.t.platform.clock.Set(g.t.now() + 0.02);
  g.t.program.RunDue();
  g.windows.SetZoom(g.form, 1.0);
  auto* text = g.windows.WidgetOf(g.t.surface().Id("FrmGame", "Text1"));
  qreal points = text->font().pointSizeF();
  g.windows.SetZoom(g.form, 2.0);
  g.ExpectEveryControlAt(2.0);
  EXPECT_DOUBLE_EQ(text->font().pointSizeF(), 2 * points);
  EXPECT_EQ(g.Window()->width(), At(2.0, 8385));
  EXPECT_EQ(g.Window()->size(), g.Window()->maximumSize()) << "the window keeps its size";
  testing::SaveCheckedScreenshot(g.windows, g.t.surface(), g.form, "page-at-200");

  ControlId choose = g.t.surface().Id("FrmGame", "Picture1");
  bool pressedSeen = false;
  g.t.program.Post(g.t.now() + 0.1, [&](Program&) {
    pressedSeen = g.windows.WidgetOf(choose)->pos() == QPoint(At(2, 360 + 50), At(2, 5040 + 50));
  });
  g.t.program.RunEvent([&] { g.t.program.PressAnimation(choose); });
  EXPECT_TRUE(pressedSeen);
  EXPECT_EQ(g.t.surface().At(choose).left, 360);
  g.ExpectEveryControlAt(2.0);

  QTest::keyClick(g.Window(), Qt::Key_Escape);
  ASSERT_TRUE(g.windows.WidgetOf(g.t.surface().Id("FrmGame", "Picture2"))->isVisible());
  g.ExpectEveryControlAt(2.0);
  testing::SaveCheckedScreenshot(g.windows, g.t.surface(), g.form, "picture-menu-at-200");
}

// Every control's text grows with the zoom, whether its table names a font
// or not ("HP:" and "Exp:" name none), in the game window and the editor.
TEST(QtZoom, EveryControlsTextGrowsWithTheZoom) {
  ZoomedGame g;
  g.t.program.RunEvent([&] { g.t.surface().Raise(g.t.surface().Id("FrmGame", "mnucreatequest"), Event::Click); });
  for (const char* name : {"FrmGame", "createquest"}) {
    int form = g.t.surface().FindForm(name);
    const FormDecl& table = g.t.surface().Table(form);
    auto heights = [&](double zoom) {
      g.windows.SetZoom(form, zoom);
      std::vector<qreal> h;
      for (int i = 0; i < static_cast<int>(table.controls.size()); ++i) {
        QWidget* w = g.windows.WidgetOf({form, i});
        h.push_back(w ? QFontMetricsF(w->font()).height() : 0);
      }
      return h;
    };
    std::vector<qreal> at100 = heights(1.0);
    for (double zoom : {1.5, 2.5}) {
      std::vector<qreal> zoomed = heights(zoom);
      int texts = 0;
      for (std::size_t i = 0; i < at100.size(); ++i) {
        Kind kind = table.controls[i].kind;
        bool text = kind == Kind::Label || kind == Kind::TextBox || kind == Kind::CommandButton ||
                    kind == Kind::CheckBox || kind == Kind::OptionButton || kind == Kind::ListBox ||
                    kind == Kind::Frame || kind == Kind::DirListBox;
        if (!text || at100[i] == 0) continue;
        ++texts;
        EXPECT_NEAR(zoomed[i] / at100[i], zoom, 0.1 * zoom) << name << "." << table.controls[i].name << " at " << zoom;
      }
      EXPECT_GT(texts, 10) << name;
    }
  }
}
// What a dialog looked like when it opened.
struct Opened {
  qreal points = 0;
  QSize size;
  QWidget* parent = nullptr;
};

// The menu bar, its menus and the dialogs over the window grow with it: at
// 200% their text is twice the size it is at 100%, and so are they, about.
TEST(QtZoom, TheMenuBarAndTheDialogsOverTheWindowGrowWithIt) {
  ZoomedGame g;
  QtDialogs dialogs([&]() -> QWidget* { return g.windows.ActiveWindow(); });
  QMainWindow* window = g.Window();
  auto look = [&](const std::function<void()>& open) {
    Opened seen;
    QTimer::singleShot(0, [&seen] {
      QWidget* dialog = QApplication::activeModalWidget();
      if (!dialog) return;
      seen = {dialog->font().pointSizeF(), dialog->size(), dialog->parentWidget()};
      QTest::keyClick(dialog, Qt::Key_Escape);
    });
    open();
    return seen;
  };
  // Escape answers No, and cancels a file dialog.
  auto box = [&] { EXPECT_EQ(dialogs.MsgBox("Are you sure? This will end the current game without saving!", 4, "WARNING!!!!"), 7); };
  FileDialogRequest request{.form = "FrmGame", .dialog = "file", .save = false, .filter = "*.sav|*.sav",
                            .defaultExt = "*.sav", .initDir = g.t.dir.str(), .fileName = ""};
  auto file = [&] { EXPECT_EQ(dialogs.FileDialog(request), std::nullopt); };

  g.windows.SetZoom(g.form, 1.0);
  qreal barPoints = window->menuBar()->font().pointSizeF();
  int barHeight = window->menuBar()->sizeHint().height();
  Opened box1 = look(box), file1 = look(file);
  ASSERT_GT(box1.points, 0);
  ASSERT_GT(file1.points, 0);

  g.windows.SetZoom(g.form, 2.0);
  EXPECT_DOUBLE_EQ(window->menuBar()->font().pointSizeF(), 2 * barPoints);
  EXPECT_GE(window->menuBar()->sizeHint().height(), barHeight * 1.6);
  for (QAction* menu : window->menuBar()->actions())
    EXPECT_DOUBLE_EQ(menu->menu()->font().pointSizeF(), 2 * barPoints) << menu->text().toStdString();
  g.ExpectEveryControlAt(2.0);
  Opened box2 = look(box), file2 = look(file);
  EXPECT_EQ(box2.parent, window);
  ASSERT_NE(file2.parent, nullptr);
  EXPECT_EQ(file2.parent->window(), window);
  EXPECT_DOUBLE_EQ(box2.points, 2 * box1.points);
  // A box is no wider than its screen allows, so its text may wrap to
  // more lines instead.
  EXPECT_GE(box2.size.width(), box1.size.width());
  EXPECT_GE(box2.size.height(), box1.size.height() * 1.6);
  EXPECT_DOUBLE_EQ(file2.points, 2 * file1.points);
  // A file dialog grows too, within its screen.
  EXPECT_GT(file2.size.width(), file1.size.width());
  EXPECT_GT(file2.size.height(), file1.size.height());
  EXPECT_LE(file2.size.width(), window->screen()->availableGeometry().width());
}

// Any form zooms alike, built from its table: here the quest editor.
TEST(QtZoom, TheEditorZoomsAsTheGameWindowDoes) {
  ZoomedGame g;
  g.t.program.RunEvent([&] { g.t.surface().Raise(g.t.surface().Id("FrmGame", "mnucreatequest"), Event::Click); });
  int editor = g.t.surface().FindForm("createquest");
  QMainWindow* window = g.windows.WindowOf(editor);
  ASSERT_NE(window, nullptr);
  ASSERT_TRUE(window->isVisible());
  double gameZoom = g.windows.Zoom(g.form);
  g.windows.SetZoom(editor, 1.5);
  EXPECT_EQ(g.windows.Zoom(g.form), gameZoom) << "the game window keeps its own";
  g.ExpectEveryControlAt(editor, 1.5);
  testing::SaveScreenshot(window, "editor-at-150");
}

// The window opens at the largest step that fits the screen with room to
// spare, here a screen of the offscreen platform.
TEST(QtZoom, TheWindowOpensAtTheLargestStepThatFitsItsScreen) {
  ZoomedGame g;
  QSize room = g.Window()->screen()->availableGeometry().size();
  double zoom = g.windows.Zoom(g.form);
  EXPECT_LE(At(zoom, 8385), room.width() * 0.9);
  EXPECT_LE(At(zoom, 6195), room.height() * 0.9);
  double next = zoom == 1.0 ? 1.25 : zoom == 1.25 ? 1.5 : zoom == 1.5 ? 2.0 : zoom + 0.5;
  EXPECT_TRUE(At(next, 8385) + 40 > room.width() * 0.9 || At(next, 6195) + 40 > room.height() * 0.9)
      << "a larger step would have fitted: " << next;
  // The splash, small enough for a larger step, opens at the game's.
  EXPECT_EQ(g.windows.Zoom(g.t.surface().FindForm("FrmSplash")), zoom);
}

}  // namespace
}  // namespace fw
