// The demo's movie through the real window and Qt Multimedia, with no sound
// server: it plays inside its panel, in the game window, and nothing is
// written on the terminal.
#include <gtest/gtest.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QMainWindow>
#include <QTest>
#include <QVideoWidget>
#include <QWindow>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "bindings/qt/qt_desktop.h"
#include "bindings/qt/qt_media.h"
#include "bindings/qt/qt_window.h"
#include "shell/forms.h"
#include "test_program.h"

namespace fw {
namespace {

// What the process writes on its standard error while one lives.
class CapturedStderr {
 public:
  explicit CapturedStderr(std::string path) : path_(std::move(path)) {
    std::fflush(stderr);
    saved_ = ::dup(2);
    std::FILE* file = std::fopen(path_.c_str(), "w");
    ::dup2(::fileno(file), 2);
    std::fclose(file);
  }
  ~CapturedStderr() { Restore(); }
  std::string Text() {
    Restore();
    std::stringstream text;
    text << std::ifstream(path_).rdbuf();
    return text.str();
  }

 private:
  void Restore() {
    if (saved_ < 0) return;
    std::fflush(stderr);
    ::dup2(saved_, 2);
    ::close(saved_);
    saved_ = -1;
  }
  std::string path_;
  int saved_ = -1;
};

TEST(QtMoviePanel, TheDemoMoviePlaysInsideItsPanelAndSaysNothingOnTheTerminal) {
  testing::TempDir dir;
  std::string movie = dir.str() + "/gate.avi";
  std::filesystem::copy_file(std::string(FABLEWRIGHT_DEMO_MEDIA_DIR) + "/gate.avi", movie);
  std::ofstream(dir.str() + "/q.fbw") << "[1]\r\nPage Text=The gate.\r\nMovie=" << movie << "\r\nOption One=On\r\n";
  CapturedStderr err(dir.str() + "/stderr.txt");
  QuietQtMessages();

  HeadlessPlatform platform;
  std::unique_ptr<QtWindows> windows;
  QtMediaPlayers players([&](ControlId id) { return windows ? windows->WidgetOf(id) : nullptr; });
  Services services = platform.services();
  services.players = &players;
  Program p{services, AppInfo{dir.str(), "fablewright", dir.str(), dir.str()}, AllForms()};
  windows = std::make_unique<QtWindows>(p);
  p.surface().SetObserver(windows.get());
  p.Start();
  platform.dialogs.QueueFile("FrmGame.questfile", dir.str() + "/q.fbw");
  QTest::mouseClick(windows->WidgetOf(p.surface().Id("FrmGame", "Image1")), Qt::LeftButton);

  ControlId movieId = p.surface().Id("FrmGame", "Movie");
  QElapsedTimer clock;
  clock.start();
  while (players.Position(movieId) < 300 && clock.elapsed() < 10000)
    QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
  EXPECT_GE(players.Position(movieId), 300) << "the movie never played";

  QWidget* panel = windows->WidgetOf(movieId);
  QMainWindow* game = windows->WindowOf(p.surface().FindForm("FrmGame"));
  auto* video = panel->findChild<QVideoWidget*>();
  ASSERT_NE(video, nullptr);
  EXPECT_FALSE(video->isWindow());
  EXPECT_EQ(video->window(), game);
  EXPECT_EQ(video->geometry(), panel->rect());
  for (QWindow* window : QGuiApplication::topLevelWindows()) {
    if (!window->isVisible()) continue;
    EXPECT_EQ(window, game->windowHandle()) << window->objectName().toStdString();
  }
  EXPECT_EQ(err.Text(), "");
}

}  // namespace
}  // namespace fw
