// The game window's shell through the real window: hover captions and the
// exit question by Qt Test's mouse events, and a picture of each of the
// shell's screens under build/screenshots/ for a person to look at.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QResizeEvent>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTest>
#include <QWindow>

#include <filesystem>
#include <fstream>

#include "bindings/qt/qt_desktop.h"
#include "bindings/qt/qt_window.h"
#include "forms/controls.h"
#include "shell/forms.h"
#include "shell/game_menus.h"
#include "test_program.h"
#include "screenshots.h"

namespace fw {
namespace {

// A window with the program behind it, started as a process starts.
struct Desktop {
  testing::TestProgram t{AllForms()};
  QtWindows windows{t.program};
  Desktop() { t.surface().SetObserver(&windows); }
  QWidget* Widget(const char* name) { return windows.WidgetOf(t.surface().Id("FrmGame", name)); }
  QMainWindow* Window(const char* form) { return windows.WindowOf(t.surface().FindForm(form)); }
  void Pass(double seconds) {
    t.platform.clock.Set(t.now() + seconds);
    t.program.RunDue();
  }
  // A point of the game window's client area, given in twips.
  QPoint At(float left, float top) { return {QtWindows::Px(left), QtWindows::Px(top)}; }
};

TEST(QtShell, HoverCaptionsFollowTheMouseAndClearOverTheBarePicture) {
  Desktop d;
  d.t.program.Start();
  QMainWindow* game = d.Window("FrmGame");
  ASSERT_NE(game, nullptr);
  ASSERT_TRUE(game->isVisible());
  auto* caption = qobject_cast<QLabel*>(d.Widget("Label2"));
  ASSERT_NE(caption, nullptr);
  QWidget* menu = d.Widget("Picture2");

  QWidget* quill = d.Widget("Image8");
  QTest::mouseMove(quill, quill->rect().center());
  EXPECT_EQ(caption->text(), "Create A Quest");
  testing::SaveCheckedScreenshot(d.windows, d.t.surface(), d.t.surface().FindForm("FrmGame"), "picture-menu");
  // Between the zones, on the picture itself.
  QTest::mouseMove(menu, d.At(1500, 3500));
  EXPECT_EQ(caption->text(), "");
  QWidget* quit = d.Widget("Image10");
  QTest::mouseMove(quit, quit->rect().center());
  EXPECT_EQ(caption->text(), "Quit");
}

TEST(QtShell, TheExitQuestionKeepsTheGameOnNoAndEndsItOnYes) {
  Desktop d;
  testing::TempDir dir;
  std::ofstream(dir.str() + "/q.fbw") << "[1]\r\nPage Text=Start here.\r\nOption One=Go\r\n";
  d.t.program.Start();
  d.t.platform.dialogs.QueueFile("FrmGame.questfile", dir.str() + "/q.fbw");
  QTest::mouseClick(d.Widget("Image1"), Qt::LeftButton);
  d.Pass(0.05);
  QTest::mouseClick(d.Widget("Image4"), Qt::LeftButton);
  ASSERT_TRUE(d.Widget("Picture2")->isVisible());

  d.t.platform.dialogs.QueueAnswer(7);
  QTest::mouseClick(d.Widget("Image10"), Qt::LeftButton);
  ASSERT_EQ(d.t.platform.dialogs.unchecked().size(), 1u);
  EXPECT_EQ(d.t.platform.dialogs.unchecked().front().prompt,
            "Are you sure? This will end the current game without saving!");
  EXPECT_FALSE(d.t.program.Over());
  ASSERT_NE(d.Window("FrmGame"), nullptr);
  EXPECT_TRUE(d.Window("FrmGame")->isVisible());

  d.t.platform.dialogs.QueueAnswer(6);
  d.Window("FrmGame")->close();
  EXPECT_EQ(d.t.platform.dialogs.unchecked().size(), 2u);
  EXPECT_TRUE(d.t.program.Over());
}

// A resize from the desktop reaches Form_Resize, which keeps the last line of
// the transcript in view.
TEST(QtShell, AResizeScrollsTheTranscriptToItsEnd) {
  Desktop d;
  d.t.program.Start();
  FormSurface& s = d.t.surface();
  ControlId transcript = s.Id("FrmGame", "Text1");
  s.SetSelStart(transcript, 0);
  QMainWindow* game = d.Window("FrmGame");
  QResizeEvent resize(game->size(), game->size());
  QApplication::sendEvent(game, &resize);
  EXPECT_EQ(s.At(transcript).selStart, static_cast<int>(s.At(transcript).caption.size()));
}

TEST(QtShell, PicturesOfTheSplashCreditsWhatsNewAndAbout) {
  Desktop d;
  // The splash can only be seen during its own pause, which a click on it
  // cuts short.
  bool splashSeen = false;
  double start = d.t.now();
  d.t.program.Post(start + 1, [&](Program&) {
    QMainWindow* splash = d.Window("FrmSplash");
    splashSeen = splash && splash->isVisible();
    if (!splash) return;
    testing::SaveCheckedScreenshot(d.windows, d.t.surface(), d.t.surface().FindForm("FrmSplash"), "splash");
    QTest::mouseClick(splash->centralWidget(), Qt::LeftButton);
  });
  d.t.program.Start();
  EXPECT_TRUE(splashSeen);
  EXPECT_LT(d.t.now() - start, 1.01);
  EXPECT_FALSE(d.Window("FrmSplash")->isVisible());

  QTest::mouseClick(d.Widget("Image9"), Qt::LeftButton);
  for (int tick = 0; tick < 160; ++tick) d.Pass(0.025);
  ASSERT_TRUE(d.Widget("credits")->isVisible());
  EXPECT_EQ(d.Widget("Image3")->y(), QtWindows::Px(6120 - 25 * 160));
  testing::SaveCheckedScreenshot(d.windows, d.t.surface(), d.t.surface().FindForm("FrmGame"), "credits");

  d.t.program.RunEvent([&] { d.t.surface().Raise(d.t.surface().Id("FrmGame", "mnunew"), Event::Click); });
  QMainWindow* updates = d.Window("FrmUpdates");
  ASSERT_NE(updates, nullptr);
  ASSERT_TRUE(updates->isVisible());
  EXPECT_EQ(updates->windowTitle(), "What's New! in 5.9");
  auto* text = updates->findChild<QPlainTextEdit*>("Text1");
  ASSERT_NE(text, nullptr);
  EXPECT_TRUE(text->toPlainText().startsWith("Version 5.9\n4-27-04\n"));
  testing::SaveCheckedScreenshot(d.windows, d.t.surface(), d.t.surface().FindForm("FrmUpdates"), "whats-new");

  EXPECT_EQ(updates->windowHandle()->transientParent(), d.Window("FrmGame")->windowHandle())
      << "What's New belongs to the game window";
  std::unique_ptr<QMessageBox> about = MakeMessageBox(AboutText(), 64, "About:");
  about->show();
  QTest::qWait(20);
  testing::SaveScreenshot(about.get(), "about");
  EXPECT_TRUE(about->text().endsWith("E-Mail: authors@fablewright.example"));
}

// Every window the program opens belongs to the window it is opened from,
// as the form tables say: it stays above that one and goes with it.
TEST(QtShell, EveryWindowBelongsToTheOneItIsOpenedFrom) {
  Desktop d;
  d.t.program.Start();
  FormSurface& s = d.t.surface();
  int owned = 0;
  for (const FormDef& form : AllForms()) {
    const FormDecl& t = *form.table;
    if (!*t.owner) continue;
    d.t.program.RunEvent([&] {
      FormHandle(s, t.owner).Show();
      FormHandle(s, t.name).Show();
    });
    QMainWindow* window = d.Window(t.name);
    ASSERT_NE(window, nullptr) << t.name;
    ASSERT_TRUE(window->isVisible()) << t.name;
    EXPECT_EQ(window->windowHandle()->transientParent(), d.Window(t.owner)->windowHandle()) << t.name;
    ++owned;
  }
  EXPECT_GE(owned, 8);
}

// A packaged game opens on its first page, under its own title, with an
// empty menu bar that takes no room; its picture menu holds New Game where
// Load Quest was, and no authoring zones.
TEST(QtShell, APackagedGameStartsOnItsOwnPictureMenuAndPage) {
  Desktop d;
  std::filesystem::copy(FABLEWRIGHT_SOURCE_DIR "/tests/fixtures/packaged", d.t.dir.path,
                        std::filesystem::copy_options::recursive);
  d.t.program.Start();
  FormSurface& s = d.t.surface();
  int game = s.FindForm("FrmGame");
  QMainWindow* window = d.Window("FrmGame");
  EXPECT_EQ(window->windowTitle(), "Crypt");
  ASSERT_TRUE(window->isVisible());
  // The packaged start goes straight to the first page: the picture menu
  // with its New Game waits under Image4.
  EXPECT_FALSE(d.Widget("Picture2")->isVisible());
  EXPECT_TRUE(s.At(s.Id("FrmGame", "Image11")).visible);
  // The empty menu bar takes no room: the window is the form's client area.
  EXPECT_EQ(window->centralWidget()->geometry(), QRect(0, 0, d.windows.Px(game, 8385), d.windows.Px(game, 6195)));
  for (QAction* menu : window->menuBar()->actions()) EXPECT_FALSE(menu->isVisible()) << menu->text().toStdString();
  testing::SaveCheckedScreenshot(d.windows, s, game, "packaged-start");

  // Made, the character leaves the first page; Image4 leads to the picture
  // menu, where New Game stands in place of Load Quest.
  d.Pass(0.05);
  QTest::mouseClick(d.Widget("Command9"), Qt::LeftButton);
  ASSERT_FALSE(d.Widget("CharCreate")->isVisible());
  d.Pass(0.05);
  testing::SaveCheckedScreenshot(d.windows, s, game, "packaged-page");
  // The press moves the menu button and puts it back: its picture, from
  // the game's folder, is neither read nor scaled again.
  auto* button = qobject_cast<QLabel*>(d.Widget("Image4"));
  ASSERT_FALSE(button->pixmap().isNull());
  qint64 picture = button->pixmap().cacheKey();
  QTest::mouseClick(d.Widget("Image4"), Qt::LeftButton);
  EXPECT_EQ(button->pixmap().cacheKey(), picture);
  ASSERT_TRUE(d.Widget("Picture2")->isVisible());
  EXPECT_TRUE(d.Widget("Image11")->isVisible());
  EXPECT_FALSE(d.Widget("Image1")->isVisible());
  EXPECT_FALSE(d.Widget("Image8")->isVisible());
  EXPECT_FALSE(d.Widget("Label15")->isVisible());
  testing::SaveCheckedScreenshot(d.windows, s, game, "packaged-picture-menu");
  // A new size scales it afresh.
  d.windows.SetZoom(game, 2 * d.windows.Zoom(game));
  EXPECT_NE(button->pixmap().cacheKey(), picture);
  EXPECT_EQ(button->pixmap().deviceIndependentSize().toSize(), button->size());
}

}  // namespace
}  // namespace fw
