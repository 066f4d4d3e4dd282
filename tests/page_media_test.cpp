// The media steps of a page: the movie panel and the sound track.
#include <gtest/gtest.h>

#include <fstream>

#include "forms/controls.h"
#include "forms/media_player.h"
#include "media/page_media.h"
#include "play/game_state.h"
#include "shell/forms.h"
#include "shell/frmgame.h"
#include "test_media.h"
#include "test_program.h"

namespace fw {
namespace {


class PageMediaTest : public ::testing::Test {
 protected:
  testing::TestProgram t{AllForms()};
  Program& p = t.program;
  FormSurface& s = t.surface();
  std::string dir = t.dir.str();
  PictureBox movBox{s, "FrmGame", "MovBox"};
  MediaPlayer mp3{s, "FrmGame", "playmp3"};

  void SetUp() override {
    std::ofstream(dir + "/film.avi", std::ios::binary) << testing::TestWav(1000, 2000).replace(8, 4, "AVI ");
    std::ofstream(dir + "/song.wav", std::ios::binary) << testing::TestWav(1000, 2000);
  }
  void Wait(double seconds) {
    double end = t.now() + seconds;
    while (p.NextDue() <= end) {
      t.platform.clock.Set(std::max(t.now(), p.NextDue()));
      p.RunDue();
    }
    t.platform.clock.Set(end);
  }
};

TEST_F(PageMediaTest, MoviePanelLiftsWithinOneTickOfTheEnd) {
  PlayPageMovie(p, "film.avi");  // an AVI whose header gives no length: 3 seconds
  EXPECT_TRUE(movBox.Visible());
  Wait(2.99);
  EXPECT_TRUE(movBox.Visible());
  Wait(0.016);
  EXPECT_FALSE(movBox.Visible());
}

TEST_F(PageMediaTest, AMissingMovieShowsThePanelForOneTickAtMost) {
  PlayPageMovie(p, "gone.avi");
  EXPECT_TRUE(movBox.Visible());
  Wait(0.006);
  EXPECT_FALSE(movBox.Visible());
  PlayPageMovie(p, "");
  EXPECT_FALSE(movBox.Visible());
}

TEST_F(PageMediaTest, TheSameTrackPlaysOnAndABlankOneChangesNothing) {
  PlayPageMp3(p, "song.wav");
  Wait(1.0);
  PlayPageMp3(p, "song.wav");  // loaded already: no restart
  PlayPageMp3(p, "");
  Wait(1.01);
  EXPECT_EQ(mp3.PlayState(), 0);
  EXPECT_EQ(mp3.FileName(), "song.wav");
  PlayMp3(p, "song.wav");  // the flows without the test restart it
  EXPECT_EQ(mp3.PlayState(), 2);
  PlayMp3(p, "");
  EXPECT_EQ(mp3.PlayState(), 0);
  EXPECT_EQ(mp3.FileName(), "");
}

TEST_F(PageMediaTest, AutoRepeatSetsNinetyNineOrOneByFlow) {
  PlayMp3(p, "song.wav");
  ApplyAutoRepeat(p, "1", "", true);
  EXPECT_EQ(mp3.PlayCount(), 99);
  Wait(150);
  EXPECT_EQ(mp3.PlayState(), 2);  // 99 rounds of two seconds
  ApplyAutoRepeat(p, "0", "", true);
  EXPECT_EQ(mp3.PlayCount(), 99);  // choosing an option: no track, no change
  ApplyAutoRepeat(p, "", "", false);
  EXPECT_EQ(mp3.PlayCount(), 1);
}

// Each way a page starts a track while the last one still plays: the new
// track plays its own two seconds, not what was left of the old one.
TEST_F(PageMediaTest, EveryNewTrackOutlivesTheEndOfTheOneBefore) {
  std::ofstream(dir + "/rain.wav", std::ios::binary) << testing::TestWav(1000, 2000);
  std::ofstream(dir + "/drums.wav", std::ios::binary) << testing::TestWav(1000, 2000);
  std::ofstream(dir + "/q.fbw", std::ios::binary)
      << "[Story Info]\r\nTitle=Tracks\r\n"
         "[1]\r\nMp3=song.wav\r\nOption One=On\r\nOption One Destination Page=2\r\n"
         "[2]\r\nMp3=rain.wav\r\nBattle=1\r\nBattleMonHp=9\r\nBattleMp3=drums.wav\r\nBattleEscape=3\r\n"
         "[3]\r\nMp3=song.wav\r\n";
  GameState g(p);
  auto openQuest = [&] {
    t.platform.dialogs.QueueAnswer(6);  // asked only when a quest is open
    t.platform.dialogs.QueueFile("FrmGame.questfile", dir + "/q.fbw");
    s.Raise(s.Id("FrmGame", "mnuloadquest"), Event::Click);
  };
  auto expectFullLength = [&](const char* file) {
    EXPECT_TRUE(mp3.FileName().ends_with(file));
    Wait(1.5);
    EXPECT_EQ(mp3.PlayState(), kPlayPlaying) << file << " cut off";
    Wait(0.6);
    EXPECT_EQ(mp3.PlayState(), kPlayStopped) << file << " never ends";
  };
  openQuest();
  Wait(1.0);
  g.Option1.SetValue(true);
  s.Raise(s.Id("FrmGame", "Picture1"), Event::Click);  // rain, then the battle's drums
  expectFullLength("drums.wav");
  PlayMp3(p, "rain.wav");
  Wait(1.0);
  s.Raise(s.Id("FrmGame", "Picture8"), Event::Click);  // escape to page 3 while rain plays
  expectFullLength("song.wav");
  openQuest();
  Wait(1.0);
  openQuest();
  expectFullLength("song.wav");
}

}  // namespace
}  // namespace fw
