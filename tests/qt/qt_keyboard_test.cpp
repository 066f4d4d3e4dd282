// Play without a mouse and with a screen reader: the keys of the game
// window's key table reach the controls they stand for and are refused as a
// click on them would be; Tab reaches every button with a visible focus;
// every control a player sees has a name. Dialogs over the game are
// qt_zoom_test's.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QImage>
#include <QLabel>
#include <QMainWindow>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>

#include "bindings/qt/qt_desktop.h"
#include "bindings/qt/qt_widgets.h"
#include "bindings/qt/qt_window.h"
#include "forms/controls.h"
#include "shell/forms.h"
#include "test_program.h"
#include "screenshots.h"

namespace fw {
namespace {

struct Game {
  testing::TestProgram t{AllForms()};
  QtWindows windows{t.program};
  Game() { t.surface().SetObserver(&windows); }
  FormSurface& s() { return t.surface(); }
  ControlId Id(const char* name) { return s().Id("FrmGame", name); }
  QWidget* Widget(const char* name) { return windows.WidgetOf(Id(name)); }
  QMainWindow* Window() { return windows.WindowOf(s().FindForm("FrmGame")); }
  bool Shown(const char* name) { return s().Shown(Id(name)); }
  void Pass(double seconds) {
    t.platform.clock.Set(t.now() + seconds);
    t.program.RunDue();
  }
  void Key(Qt::Key key) { QTest::keyClick(Window(), key); }
  // Starts the program and opens a quest (a copy: a character is written into it).
  void Open(const std::string& quest) {
    t.program.Start();
    std::string copy = t.dir.str() + "/quest.fbw";
    std::filesystem::copy_file(quest, copy, std::filesystem::copy_options::overwrite_existing);
    t.platform.dialogs.QueueFile("FrmGame.questfile", copy);
    QTest::mouseClick(Widget("Image1"), Qt::LeftButton);
    Pass(0.02);
  }
  void Queue(std::initializer_list<float> draws) {
    for (float draw : draws) t.platform.random.Queue(draw);
  }
};

std::string Fixture(const char* name) { return std::string(FABLEWRIGHT_SOURCE_DIR) + "/tests/fixtures/" + name; }

// Any key on the splash lets the player in, as a click on it does.
TEST(QtKeyboard, AKeyOnTheSplashEndsItsPause) {
  Game g;
  double start = g.t.now();
  g.t.program.Post(start + 0.5, [&](Program&) {
    QTest::keyClick(g.windows.WindowOf(g.s().FindForm("FrmSplash")), Qt::Key_Space);
  });
  g.t.program.Start();
  EXPECT_LT(g.t.now() - start, 0.51);
  EXPECT_TRUE(g.Window()->isVisible());
}

// The share of the widget's edge, a band 4 pixels deep, that taking the
// keyboard's focus changes plainly (its red, green and blue move by more
// than 60 together): how visibly it shows the focus.
double RingShare(QWidget* w) {
  w->window()->activateWindow();
  EXPECT_TRUE(QTest::qWaitForWindowActive(w->window()));
  w->clearFocus();
  QImage plain = w->grab().toImage();
  w->setFocus(Qt::TabFocusReason);
  QImage focused = w->grab().toImage();
  int band = 0, changed = 0;
  for (int y = 0; y < plain.height(); ++y)
    for (int x = 0; x < plain.width(); ++x)
      if (x < 4 || y < 4 || x >= plain.width() - 4 || y >= plain.height() - 4) {
        QColor a(plain.pixel(x, y)), b(focused.pixel(x, y));
        ++band;
        changed += std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue()) > 60;
      }
  return band ? static_cast<double>(changed) / band : 0;
}

TEST(QtKeyboard, PlaysAPageAndAFightByKeys) {
  Game g;
  g.Queue({0.6f, 0.5f, 0.5f});
  g.Open(Fixture("battle/fight.fbw"));
  ASSERT_TRUE(g.Shown("CharCreate"));
  // A plain button shows the keyboard's place as plainly as a picture
  // button does.
  double picture = RingShare(g.Widget("Picture1")), button = RingShare(g.Widget("Command10"));
  EXPECT_GT(picture, 0.3);
  EXPECT_GE(button, 0.8 * picture);
  testing::SaveScreenshot(g.Window(), "button-focus");
  // Nothing on the character panel is closed by Escape until the character
  // is made; Enter on the focused Create button makes it.
  g.Key(Qt::Key_Escape);
  EXPECT_TRUE(g.Shown("CharCreate"));
  QTest::keyClick(g.Widget("Command9"), Qt::Key_Return);
  g.Pass(0.02);
  ASSERT_FALSE(g.Shown("CharCreate"));

  g.Key(Qt::Key_1);
  EXPECT_TRUE(g.s().At(g.Id("Option1")).optionValue);
  g.Key(Qt::Key_Return);
  ASSERT_TRUE(g.Shown("BattleBox"));
  EXPECT_EQ(g.s().At(g.Id("pg")).caption, "2");
  // The page's keys lie under the fight.
  g.Key(Qt::Key_I);
  g.Key(Qt::Key_Escape);
  EXPECT_FALSE(g.Shown("InvBox"));
  EXPECT_FALSE(g.Shown("Picture2"));

  g.Queue({0.3f, 0.9f, 0.3f});
  g.Key(Qt::Key_A);
  EXPECT_EQ(g.s().At(g.Id("Text2")).caption,
            "You are under attack from Rat!\r\nYou missed!\r\nYou've been hit for 6 damage!");
  testing::SaveScreenshot(g.Window(), "fight-by-keys");
  g.Queue({0.05f, 0.5f, 0.05f, 0.5f});
  g.Key(Qt::Key_A);
  EXPECT_FALSE(g.Shown("BattleBox"));
  EXPECT_EQ(g.s().At(g.Id("pg")).caption, "3");

  g.Key(Qt::Key_I);
  ASSERT_TRUE(g.Shown("InvBox"));
  EXPECT_EQ(g.s().At(g.Id("List1")).list, std::vector<std::string>{"Rat tail"});
  testing::SaveScreenshot(g.Window(), "inventory-by-keys");
  g.Key(Qt::Key_Escape);
  EXPECT_FALSE(g.Shown("InvBox"));
  g.Key(Qt::Key_C);
  ASSERT_TRUE(g.Shown("CharCreate"));
  g.Key(Qt::Key_Escape);
  EXPECT_FALSE(g.Shown("CharCreate"));
  g.Key(Qt::Key_Escape);
  EXPECT_TRUE(g.Shown("Picture2"));
}

TEST(QtKeyboard, EscapeLeavesAFightThatAllowsIt) {
  Game g;
  g.Queue({0.6f, 0.5f, 0.5f});
  g.Open(Fixture("battle/fight.fbw"));
  QTest::mouseClick(g.Widget("Command9"), Qt::LeftButton);
  g.Pass(0.02);
  g.Key(Qt::Key_1);
  g.Key(Qt::Key_Enter);  // the keypad's
  ASSERT_TRUE(g.Shown("BattleBox"));
  g.Queue({0.1f, 0.1f, 0.1f, 0.1f});
  g.Key(Qt::Key_E);
  EXPECT_FALSE(g.Shown("BattleBox"));
}

// Each option on screen shows the key of the form's key table that selects
// it, and a gated option takes its key away with it: with all but the third
// option gone, the one line left says 3, and 3 selects it, not 1.
TEST(QtKeyboard, EachOptionShowsTheKeyThatSelectsIt) {
  Game g;
  g.Open(Fixture("play/gating.fbw"));
  g.Key(Qt::Key_2);  // leave the lamp
  g.Key(Qt::Key_Return);
  g.Pass(0.05);
  int form = g.s().FindForm("FrmGame");
  const FormDecl& table = g.s().Table(form);
  // Each option's line starts with its key, drawn dark on a light cap.
  auto expectKeysBeside = [&](double zoom) {
    g.windows.SetZoom(form, zoom);
    for (const char* name : {"Option1", "Option2", "Option3", "Option4"}) {
      auto* option = dynamic_cast<OptionRow*>(g.Widget(name));
      ASSERT_NE(option, nullptr) << name;
      EXPECT_EQ(option->Key(), KeyOf(table, name));
      if (!g.Shown(name)) continue;
      QImage cap = option->grab(QRect(0, 0, option->height(), option->height())).toImage();
      int ink = 0;
      for (int y = 0; y < cap.height(); ++y)
        for (int x = 0; x < cap.width(); ++x) ink += QColor(cap.pixel(x, y)).lightness() < 100;
      EXPECT_GT(ink, cap.width() * cap.height() / 8) << name << " at " << zoom;
    }
  };
  expectKeysBeside(1.0);
  EXPECT_FALSE(g.Shown("Option1"));
  EXPECT_FALSE(g.Shown("Option2"));
  ASSERT_TRUE(g.Shown("Option3"));
  testing::SaveCheckedScreenshot(g.windows, g.s(), form, "page-keys");
  g.Key(Qt::Key_1);
  for (const char* name : {"Option1", "Option2", "Option3", "Option4"})
    EXPECT_FALSE(g.s().At(g.Id(name)).optionValue) << name;
  g.Key(Qt::Key_3);
  EXPECT_TRUE(g.s().At(g.Id("Option3")).optionValue);
  expectKeysBeside(2.5);
  testing::SaveCheckedScreenshot(g.windows, g.s(), form, "page-keys-at-250");
}

TEST(QtKeyboard, AnOptionUnderThePanelOnTopRefusesItsKey) {
  Game g;
  testing::TempDir dir;
  std::ofstream(dir.str() + "/q.fbw") << "[1]\r\nPage Text=Two ways.\r\nOption One=Left\r\nOption Two=Right\r\n";
  g.Open(dir.str() + "/q.fbw");
  g.Key(Qt::Key_I);
  ASSERT_TRUE(g.Shown("InvBox"));
  g.Key(Qt::Key_2);
  EXPECT_FALSE(g.s().At(g.Id("Option2")).optionValue);
  g.Key(Qt::Key_Escape);
  g.Key(Qt::Key_2);
  EXPECT_TRUE(g.s().At(g.Id("Option2")).optionValue);
  // A key held with Ctrl is the window's, not the game's.
  QTest::keyClick(g.Window(), Qt::Key_1, Qt::ControlModifier);
  EXPECT_TRUE(g.s().At(g.Id("Option2")).optionValue);
}

TEST(QtKeyboard, TabReachesEveryButtonOfThePageWithAVisibleFocus) {
  Game g;
  testing::TempDir dir;
  std::ofstream(dir.str() + "/q.fbw") << "[1]\r\nPage Text=Two ways.\r\nOption One=Left\r\nOption Two=Right\r\n";
  g.Open(dir.str() + "/q.fbw");
  QMainWindow* window = g.Window();
  window->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window));
  std::set<QString> reached;
  for (int i = 0; i < 40; ++i) {
    g.Key(Qt::Key_Tab);
    if (QWidget* focus = QApplication::focusWidget()) reached.insert(focus->objectName());
  }
  for (const char* button : {"Picture1", "Picture3", "Picture5", "Image4", "Option1", "Option2"})
    EXPECT_TRUE(reached.count(button)) << button;
  // Only what can be seen: the picture menu's zones are hidden under the page.
  EXPECT_FALSE(reached.count("Image1"));

  QWidget* choose = g.Widget("Picture1");
  QImage plain = choose->grab().toImage();
  choose->setFocus(Qt::TabFocusReason);
  QImage focused = choose->grab().toImage();
  EXPECT_NE(plain, focused);
  testing::SaveScreenshot(window, "page-focus");
  QWidget* option = g.Widget("Option1");
  QImage optionPlain = option->grab().toImage();
  option->setFocus(Qt::TabFocusReason);
  EXPECT_NE(optionPlain, option->grab().toImage()) << "an option shows its focus too";
  testing::SaveScreenshot(window, "option-focus");
  // Space on a focused picture button presses it.
  g.Widget("Picture3")->setFocus(Qt::TabFocusReason);
  QTest::keyClick(g.Widget("Picture3"), Qt::Key_Space);
  ASSERT_TRUE(g.Shown("InvBox"));
  // Over the inventory, Tab goes only where a click would.
  reached.clear();
  for (int i = 0; i < 20; ++i) {
    g.Key(Qt::Key_Tab);
    if (QWidget* focus = QApplication::focusWidget()) reached.insert(focus->objectName());
  }
  EXPECT_TRUE(reached.count("Picture6"));
  EXPECT_FALSE(reached.count("Picture1"));
  EXPECT_FALSE(reached.count("Option1"));
}

// Every control a player sees on either screen has a name to be read out;
// a hot zone's is the caption its hover shows.
TEST(QtAccessibility, EveryVisibleControlOfTheGameWindowHasAName) {
  Game g;
  g.t.program.Start();
  auto checkAll = [&](const char* screen) {
    const FormDecl& table = g.s().Table(g.s().FindForm("FrmGame"));
    int seen = 0;
    for (const ControlDecl& d : table.controls) {
      QWidget* w = g.Widget(d.name);
      if (!w || !w->isVisible()) continue;
      ++seen;
      EXPECT_FALSE(w->accessibleName().isEmpty()) << screen << ": " << d.name;
    }
    EXPECT_GT(seen, 5) << screen;
  };
  checkAll("picture menu");
  auto* caption = qobject_cast<QLabel*>(g.Widget("Label2"));
  for (const char* zone : {"Image1", "Image2", "Image5", "Image6", "Image7", "Image8", "Image9", "Image10"}) {
    QWidget* w = g.Widget(zone);
    QTest::mouseMove(w, w->rect().center());
    EXPECT_EQ(w->accessibleName(), caption->text()) << zone;
  }
  // Tab names each zone it reaches in the banner, as the mouse does.
  g.Window()->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(g.Window()));
  std::set<QString> named;
  for (int i = 0; i < 14; ++i) {
    g.Key(Qt::Key_Tab);
    QWidget* zone = QApplication::focusWidget();
    if (!zone || zone->parentWidget() != g.Widget("Picture2")) continue;
    QString byKeys = caption->text();
    QTest::mouseMove(zone, zone->rect().center());
    EXPECT_EQ(byKeys.toStdString(), caption->text().toStdString()) << zone->objectName().toStdString();
    if (!byKeys.isEmpty()) named.insert(byKeys);
  }
  EXPECT_GE(named.size(), 8u);
  testing::TempDir dir;
  std::ofstream(dir.str() + "/q.fbw") << "[1]\r\nPage Text=Two ways.\r\nOption One=Left &Go\r\nOption Two=Right\r\n";
  g.t.platform.dialogs.QueueFile("FrmGame.questfile", dir.str() + "/q.fbw");
  QTest::mouseClick(g.Widget("Image1"), Qt::LeftButton);
  g.Pass(0.02);
  checkAll("page");
  EXPECT_EQ(g.Widget("Option2")->accessibleName(), "Right");
  EXPECT_EQ(g.Widget("Picture1")->accessibleName(), "Choose");
  EXPECT_EQ(g.Widget("Text1")->accessibleName(), "The story so far");
  g.Key(Qt::Key_I);
  checkAll("inventory");
}

}  // namespace
}  // namespace fw
