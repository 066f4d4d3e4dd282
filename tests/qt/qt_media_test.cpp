// Qt Multimedia behind the media player controls, with no sound card.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QWidget>

#include <fstream>

#include "shell/controls.h"
#include "shell/forms.h"
#include "shell/qt/qt_media.h"
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

TEST(QtMedia, PlaysAGeneratedWavToItsEndTwiceWithAPlayCountOfTwo) {
  testing::TempDir dir;
  std::ofstream(dir.str() + "/tone.wav", std::ios::binary) << testing::TestWav(8000, 3200, 16);
  std::ofstream(dir.str() + "/junk.wav") << "no sound here";
  QWidget screen;
  QtMediaPlayers players([&](ControlId) { return &screen; });
  HeadlessPlatform platform;
  Services services = platform.services();
  services.players = &players;
  Program p(services, AppInfo{dir.str(), "fablewright", dir.str(), dir.str()}, AllForms());
  MediaPlayer mp3(p.surface(), "FrmGame", "playmp3");

  EXPECT_THROW(mp3.SetFileName("junk.wav"), Failure);
  mp3.SetFileName("tone.wav");
  ASSERT_EQ(mp3.ReadyState(), 4);
  QElapsedTimer clock;
  clock.start();
  mp3.Play();
  mp3.SetPlayCount(2);
  EXPECT_EQ(mp3.PlayState(), 2);
  ASSERT_TRUE(SpinUntil([&] { return mp3.PlayState() == 0; }, 15000)) << "no end of media";
  EXPECT_GE(clock.elapsed(), 700);  // two rounds of 0.4 seconds
}

}  // namespace
}  // namespace fw
