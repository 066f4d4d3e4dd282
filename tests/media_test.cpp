// The MIDI voice's state machine and the media players, on the headless
// backends and the virtual clock.
#include <gtest/gtest.h>

#include <fstream>

#include "media/media_length.h"
#include "media/midi_api.h"
#include "media/smf.h"
#include "shell/controls.h"
#include "shell/forms.h"
#include "shell/media_player.h"
#include "test_media.h"
#include "test_program.h"

namespace fw {
namespace {

// Four quarter notes at 120 beats a minute: two seconds.
std::string TwoSecondTune() {
  std::vector<MidiNote> notes;
  for (std::uint32_t i = 0; i < 4; ++i) notes.push_back({i * 480, 480, static_cast<std::uint8_t>(60 + i)});
  return WriteMidi(notes, 480, 500000, 0);
}


TEST(MidiFile, LengthFollowsTheLastEventAndEveryTempo) {
  EXPECT_DOUBLE_EQ(*MidiLength(TwoSecondTune()), 2.0);
  std::string tune = TwoSecondTune();
  EXPECT_FALSE(MidiLength(""));
  EXPECT_FALSE(MidiLength("MThd"));
  EXPECT_FALSE(MidiLength(tune.substr(0, tune.size() - 3)));  // cut short
  EXPECT_FALSE(MidiLength("RIFF....WAVE"));
  std::string garbage = tune;
  for (std::size_t i = 22; i < garbage.size(); i += 3) garbage[i] = static_cast<char>(0xFF);
  MidiLength(garbage);  // must not crash, whatever it answers
}

TEST(MediaFiles, KindsAndLengthsFromHeaders) {
  std::string wav = testing::TestWav(8000, 12000);
  EXPECT_EQ(SniffMedia(wav), MediaKind::Wav);
  EXPECT_DOUBLE_EQ(*MediaLength(MediaKind::Wav, wav), 1.5);
  EXPECT_EQ(SniffMedia("ID3\x03"), MediaKind::Mp3);
  EXPECT_EQ(SniffMedia(std::string("RIFF\0\0\0\0AVI LIST", 16)), MediaKind::Avi);
  EXPECT_EQ(SniffMedia("hello world!"), MediaKind::None);
  EXPECT_FALSE(MediaLength(MediaKind::Avi, std::string("RIFF\0\0\0\0AVI ", 12)));
  EXPECT_FALSE(MediaLength(MediaKind::Wav, wav.substr(0, 30)));
}

class MidiTest : public ::testing::Test {
 protected:
  testing::TestProgram t{AllForms()};
  Program& p = t.program;
  std::vector<std::string>& log = t.platform.sequencer.log;
  std::string dir = t.dir.str();

  void SetUp() override {
    std::ofstream(dir + "/a.mid", std::ios::binary) << TwoSecondTune();
    std::ofstream(dir + "/b.mid", std::ios::binary) << TwoSecondTune();
  }
  void Wait(double seconds) {
    t.platform.clock.Set(t.now() + seconds);
    p.RunDue();
  }
};

TEST_F(MidiTest, StartMidiClosesUnhooksPumpsThenPlaysAndHooks) {
  StartMidi(p, "a.mid", true, 1);
  // The stop closes the empty name; the second close names the new file.
  EXPECT_EQ(log, (std::vector<std::string>{"close ", "close a.mid", "open " + dir + "/a.mid",
                                           "play " + dir + "/a.mid from 0"}));
  EXPECT_TRUE(p.midi.MidiOpen);
  EXPECT_TRUE(p.midi.hooked);
  EXPECT_TRUE(p.midi.MidiRepeat);
  EXPECT_EQ(p.midi.MidiFile, dir + "/a.mid");
}

TEST_F(MidiTest, AtTheEndTheTuneStartsAgainWithoutANewOpen) {
  StartMidi(p, "a.mid", true, 1);
  log.clear();
  Wait(2.0);
  EXPECT_EQ(log, (std::vector<std::string>{"play " + dir + "/a.mid from 0"}));
  Wait(2.0);
  EXPECT_EQ(log.size(), 2u);
}

TEST_F(MidiTest, TwoTunesInARowCloseTheFirstAndItsEndIsStale) {
  StartMidi(p, "a.mid", true, 1);
  Wait(1.0);
  StartMidi(p, "b.mid", true, 1);
  EXPECT_EQ(log[4], "close " + dir + "/a.mid");
  log.clear();
  Wait(1.5);  // a.mid's old end falls here: superseded, nothing happens
  EXPECT_TRUE(log.empty());
  Wait(0.6);
  EXPECT_EQ(log, (std::vector<std::string>{"play " + dir + "/b.mid from 0"}));
}

TEST_F(MidiTest, StopTwiceIsHarmlessAndSilencesForGood) {
  StartMidi(p, "a.mid", true, 1);
  Command2_Click(p);
  Command2_Click(p);
  EXPECT_FALSE(p.midi.MidiOpen);
  EXPECT_FALSE(p.midi.hooked);
  log.clear();
  Wait(5);
  EXPECT_TRUE(log.empty());
}

TEST_F(MidiTest, MissingOrBlankFileFailsSilentlyWithTheHookInPlace) {
  for (const char* file : {"", "missing.mid"}) {
    StartMidi(p, file, true, 1);
    EXPECT_EQ(p.midi.MidiFile, "");
    EXPECT_FALSE(p.midi.MidiOpen);
    EXPECT_TRUE(p.midi.hooked);
    EXPECT_EQ(log.back(), "open ");
  }
}

TEST_F(MidiTest, AStretchUsesFromAndToAndAnEndWithoutHookIsLost) {
  p.midi.MidiFile = "a.mid";
  p.midi.MidiFrom = 0;
  p.midi.MidiTo = 500;
  p.midi.MidiRepeat = false;
  MidiPlay(p);
  EXPECT_EQ(log.back(), "play " + dir + "/a.mid from 0 to 500");
  Wait(0.5);  // no hook: the end goes nowhere and the device stays open
  EXPECT_TRUE(p.midi.MidiOpen);
  MidiHook(p);
  MidiNotify(p, p.midi.generation);  // not repeating: an end closes
  EXPECT_FALSE(p.midi.MidiOpen);
}

TEST_F(MidiTest, PlayersLoadPlayForTheirLengthAndTakeANewCount) {
  std::ofstream(dir + "/one.wav", std::ios::binary) << testing::TestWav(8000, 8000);
  std::ofstream(dir + "/junk.mp3") << "not a sound";
  MediaPlayer mp3(p.surface(), "FrmGame", "playmp3");
  mp3.SetFileName("one.wav");
  EXPECT_EQ(mp3.ReadyState(), kReadyComplete);
  mp3.Play();
  mp3.SetPlayCount(3);  // set after Play, as pages do
  EXPECT_EQ(mp3.PlayState(), kPlayPlaying);
  Wait(2.9);
  EXPECT_EQ(mp3.PlayState(), kPlayPlaying);
  Wait(0.2);
  EXPECT_EQ(mp3.PlayState(), kPlayStopped);
  EXPECT_THROW(mp3.SetFileName("junk.mp3"), Failure);
  EXPECT_THROW(mp3.SetFileName("missing.wav"), Failure);
  EXPECT_EQ(mp3.FileName(), "one.wav");
  EXPECT_EQ(mp3.ReadyState(), 0);
  mp3.SetFileName("");
  mp3.Play();  // silence, no failure
  EXPECT_EQ(mp3.PlayState(), kPlayStopped);
}

// Every start of a track supersedes the end an earlier start had scheduled:
// a new file, the same file loaded again, or a second Play.
TEST_F(MidiTest, AStartWhileATrackPlaysRunsItsOwnFullLength) {
  std::ofstream(dir + "/one.wav", std::ios::binary) << testing::TestWav(8000, 16000);
  std::ofstream(dir + "/two.wav", std::ios::binary) << testing::TestWav(8000, 16000);
  MediaPlayer mp3(p.surface(), "FrmGame", "playmp3");
  for (const char* next : {"two.wav", "one.wav", ""}) {
    SCOPED_TRACE(*next ? next : "Play alone");
    mp3.SetFileName("one.wav");
    mp3.Play();
    Wait(1.0);
    if (*next) mp3.SetFileName(next);
    mp3.Play();
    Wait(1.5);  // past the end of the first start
    EXPECT_EQ(mp3.PlayState(), kPlayPlaying);
    Wait(0.6);
    EXPECT_EQ(mp3.PlayState(), kPlayStopped);
  }
}

}  // namespace
}  // namespace fw
