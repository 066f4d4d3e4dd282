// Qt Multimedia behind the media player controls, with no sound card.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QWidget>

#include <fstream>

#include "shell/controls.h"
#include "shell/forms.h"
#include "shell/qt/qt_media.h"
#include "test_program.h"

namespace fw {
namespace {

// A mono 16-bit WAV of a short tone.
std::string Tone(double seconds) {
  auto le = [](std::uint32_t v, int n) {
    std::string s;
    for (int i = 0; i < n; ++i) s += static_cast<char>((v >> (8 * i)) & 0xFF);
    return s;
  };
  const std::uint32_t rate = 8000;
  auto frames = static_cast<std::uint32_t>(seconds * rate);
  std::string data;
  for (std::uint32_t i = 0; i < frames; ++i) data += le(static_cast<std::uint16_t>((i % 20 < 10) ? 8000 : -8000), 2);
  return "RIFF" + le(36 + data.size(), 4) + "WAVEfmt " + le(16, 4) + le(1, 2) + le(1, 2) + le(rate, 4) +
         le(rate * 2, 4) + le(2, 2) + le(16, 2) + "data" + le(data.size(), 4) + data;
}

// Runs Qt's event loop until the condition holds or the limit passes.
bool SpinUntil(const std::function<bool()>& done, int limitMs) {
  QElapsedTimer timer;
  timer.start();
  while (!done() && timer.elapsed() < limitMs) QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
  return done();
}

TEST(QtMedia, PlaysAGeneratedWavToItsEndTwiceWithAPlayCountOfTwo) {
  testing::TempDir dir;
  std::ofstream(dir.str() + "/tone.wav", std::ios::binary) << Tone(0.4);
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
