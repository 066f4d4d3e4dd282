// The media steps of a page: the movie panel and the sound track.
#include <gtest/gtest.h>

#include <fstream>

#include "media/page_media.h"
#include "shell/controls.h"
#include "shell/forms.h"
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

}  // namespace
}  // namespace fw
