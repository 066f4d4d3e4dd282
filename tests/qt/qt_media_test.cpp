// Qt Multimedia behind the media player controls, with no sound card.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QWidget>

#include <fstream>

#include "bindings/qt/qt_media.h"
#include "forms/controls.h"
#include "forms/media_player.h"
#include "shell/forms.h"
#include "test_media.h"
#include "test_program.h"

namespace fw {
namespace {

// Runs Qt's event loop until the condition holds or the limit passes.
bool SpinUntil(const std::function<bool()>& done, int limitMs) {
  QElapsedTimer timer;
  timer.start();
  while (!done() && timer.elapsed() < limitMs) QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
  return done();
}

class QtMedia : public ::testing::Test {
 protected:
  testing::TempDir dir;
  QWidget screen;
  QtMediaPlayers players{[this](ControlId) { return &screen; }};
  HeadlessPlatform platform;
  Program p{WithQtPlayers(), AppInfo{dir.str(), "fablewright", dir.str(), dir.str()}, AllForms()};
  MediaPlayer mp3{p.surface(), "FrmGame", "playmp3"};

  Services WithQtPlayers() {
    Services services = platform.services();
    services.players = &players;
    return services;
  }
  // A 16-bit WAV of the given tenths of a second.
  void WriteWav(const std::string& name, int tenths) {
    std::ofstream(dir.str() + "/" + name, std::ios::binary) << testing::TestWav(8000, 800 * tenths, 16);
  }
  // Milliseconds until the track stops, from now; -1 when it plays on.
  int MsToStop(int limitMs) {
    QElapsedTimer clock;
    clock.start();
    return SpinUntil([&] { return mp3.PlayState() == kPlayStopped; }, limitMs) ? static_cast<int>(clock.elapsed())
                                                                               : -1;
  }
};

TEST_F(QtMedia, PlaysAGeneratedWavToItsEndTwiceWithAPlayCountOfTwo) {
  WriteWav("tone.wav", 4);
  std::ofstream(dir.str() + "/junk.wav") << "no sound here";
  EXPECT_THROW(mp3.SetFileName("junk.wav"), Failure);
  mp3.SetFileName("tone.wav");
  ASSERT_EQ(mp3.ReadyState(), 4);
  mp3.Play();
  mp3.SetPlayCount(2);
  EXPECT_EQ(mp3.PlayState(), 2);
  int ms = MsToStop(15000);
  ASSERT_GE(ms, 0) << "no end of media";
  EXPECT_GE(ms, 700);  // two rounds of 0.4 seconds
}

// A start while a track plays (another file, the same file loaded again, or
// Play alone) runs the whole new track: nothing of the earlier play stops it.
TEST_F(QtMedia, AStartWhileATrackPlaysRunsItsOwnFullLength) {
  WriteWav("first.wav", 6);
  WriteWav("second.wav", 6);
  for (const char* next : {"second.wav", "first.wav", ""}) {
    SCOPED_TRACE(*next ? next : "Play alone");
    mp3.SetFileName("first.wav");
    mp3.Play();
    ASSERT_TRUE(SpinUntil([&] { return players.Position(mp3.id()) >= 300; }, 5000)) << "first never plays";
    if (*next) mp3.SetFileName(next);
    mp3.Play();
    int ms = MsToStop(5000);
    ASSERT_GE(ms, 0) << "no end of media";
    EXPECT_GE(ms, 500) << "cut off at the end of the first play";
  }
}

}  // namespace
}  // namespace fw
