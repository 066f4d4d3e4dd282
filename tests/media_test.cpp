// The MIDI voice's state machine and the media players, on the headless
// backends and the virtual clock.
#include <gtest/gtest.h>

#include <fstream>

#include "forms/controls.h"
#include "forms/media_player.h"
#include "media/media_file.h"
#include "media/media_length.h"
#include "media/midi_api.h"
#include "media/midi_state.h"
#include "media/smf.h"
#include "shell/forms.h"
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

// Two tracks that change the tempo at the same tick: the later track's
// change holds, as a sequencer that reads the tracks in order would do.
TEST(MidiFile, TempoChangesFromEveryTrackTimeTheTune) {
  auto big = [](std::uint32_t v, int bytes) {
    std::string s;
    for (int i = bytes - 1; i >= 0; --i) s += static_cast<char>((v >> (8 * i)) & 0xFF);
    return s;
  };
  auto track = [&](const std::string& events) { return "MTrk" + big(events.size(), 4) + events; };
  auto tempo = [&](std::uint32_t micros) { return std::string("\xFF\x51\x03", 3) + big(micros, 3); };
  std::string endOfTrack("\0\xFF\x2F\0", 4);
  // Ticks as variable-length numbers: 960 is 0x87 0x40.
  std::string first = std::string(1, '\0') + tempo(500000) + "\x87\x40" + tempo(250000) + "\x87\x40\x90\x3C\x40" + endOfTrack;
  std::string second = "\x87\x40" + tempo(1000000) + endOfTrack;
  std::string tune = "MThd" + big(6, 4) + big(1, 2) + big(2, 2) + big(480, 2) + track(first) + track(second);
  EXPECT_DOUBLE_EQ(*MidiLength(tune), 1.0 + 2.0);  // two quarters at 0.5 s, two at 1 s
  EXPECT_EQ(*MidiTickAt(tune, 0.5), 480u);
  EXPECT_EQ(*MidiTickAt(tune, 2.0), 1440u);
  EXPECT_EQ(*MidiTickAt(tune, 99), 1920u);
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

// An MP3 lasts its frames times their samples, whatever its MPEG version and
// however its bit rate varies: a first frame's bit rate tells only a CBR
// file's length, which stays what its size and bit rate give.
TEST(MediaFiles, Mp3LengthsCountTheFrames) {
  std::vector<int> vbr;
  for (int i = 0; i < 125; ++i) vbr.push_back(i % 2 ? 128 : 320);
  std::string cbr = testing::TestMp3(1, 44100, std::vector<int>(100, 128));
  struct Case {
    const char* name;
    std::string bytes;
    std::optional<double> seconds;
  } cases[] = {
      {"CBR, padded", cbr, cbr.size() * 8 / 128000.0},
      {"VBR behind a Xing frame of 32 kbps", testing::TestMp3(1, 48000, vbr, 32), 125 * 0.024},
      {"VBR without a header", testing::TestMp3(1, 48000, vbr), 125 * 0.024},
      {"MPEG-2 at 22.05 kHz", testing::TestMp3(2, 22050, std::vector<int>(200, 32)), 200 * 576 / 22050.0},
      {"MPEG-2 at 24 kHz", testing::TestMp3(2, 24000, std::vector<int>(50, 64)), 50 * 0.024},
      {"no frame", std::string(5000, 'x'), std::nullopt},
      {"nothing", "", std::nullopt},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    std::optional<double> seconds = MediaLength(MediaKind::Mp3, c.bytes);
    ASSERT_EQ(seconds.has_value(), c.seconds.has_value());
    if (seconds) {
      EXPECT_NEAR(*seconds, *c.seconds, 0.001);
    }
  }
}

// Headers where a file read by blocks can go wrong: one straddling a block,
// one inside nested lists, a frame far past a large tag. The file on disk
// must give what its bytes give.
TEST(MediaFiles, LengthsReadFromDiskMatchTheBytes) {
  testing::TempDir dir;
  std::string wav = testing::TestWav(8000, 12000);
  std::string junk = "junk" + testing::Le(4072, 4) + std::string(4072, 'j');
  wav.insert(12, junk);  // "fmt " now starts 4 bytes before the 4 KiB mark
  wav.replace(4, 4, testing::Le(wav.size() - 8, 4));
  std::string avih = "avih" + testing::Le(56, 4) + testing::Le(100000, 4) + std::string(12, '\0') +
                     testing::Le(25, 4) + std::string(36, '\0');
  std::string strl = "LIST" + testing::Le(4 + 8, 4) + "strlJUNK" + testing::Le(0, 4);
  std::string hdrl = "LIST" + testing::Le(4 + strl.size() + avih.size(), 4) + "hdrl" + strl + avih;
  std::string avi = "RIFF" + testing::Le(4 + hdrl.size(), 4) + "AVI " + hdrl;
  std::string mp3 = std::string("ID3\x04\0\0\0\0\x27\x08", 10) + std::string(5000, 'x') +
                    testing::TestMp3(1, 48000, std::vector<int>(50, 128));  // a tag of 5000 bytes, then 50 frames
  struct Case {
    const char* name;
    const std::string& bytes;
    MediaKind kind;
    double seconds;
  };
  for (const Case& c : {Case{"straddle.wav", wav, MediaKind::Wav, 1.5}, Case{"nested.avi", avi, MediaKind::Avi, 2.5},
                        Case{"tagged.mp3", mp3, MediaKind::Mp3, 1.2}}) {
    SCOPED_TRACE(c.name);
    std::ofstream(dir.str() + "/" + c.name, std::ios::binary) << c.bytes;
    MediaFileInfo info = ReadMediaFile(dir.str() + "/" + c.name);
    EXPECT_EQ(info.kind, c.kind);
    ASSERT_TRUE(info.length);
    EXPECT_DOUBLE_EQ(*info.length, c.seconds);
    EXPECT_EQ(info.length, MediaLength(c.kind, c.bytes));
  }
  EXPECT_EQ(ReadMediaFile(dir.str()).kind, MediaKind::None);  // a folder
  EXPECT_EQ(ReadMediaFile(dir.str() + "/none.wav").kind, MediaKind::None);
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
  EXPECT_TRUE(Midi(p).MidiOpen);
  EXPECT_TRUE(Midi(p).hooked);
  EXPECT_TRUE(Midi(p).MidiRepeat);
  EXPECT_EQ(Midi(p).MidiFile, dir + "/a.mid");
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
  EXPECT_FALSE(Midi(p).MidiOpen);
  EXPECT_FALSE(Midi(p).hooked);
  log.clear();
  Wait(5);
  EXPECT_TRUE(log.empty());
}

TEST_F(MidiTest, MissingOrBlankFileFailsSilentlyWithTheHookInPlace) {
  for (const char* file : {"", "missing.mid"}) {
    StartMidi(p, file, true, 1);
    EXPECT_EQ(Midi(p).MidiFile, "");
    EXPECT_FALSE(Midi(p).MidiOpen);
    EXPECT_TRUE(Midi(p).hooked);
    EXPECT_EQ(log.back(), "open ");
  }
}

TEST_F(MidiTest, AStretchUsesFromAndToAndAnEndWithoutHookIsLost) {
  Midi(p).MidiFile = "a.mid";
  Midi(p).MidiFrom = 0;
  Midi(p).MidiTo = 500;
  Midi(p).MidiRepeat = false;
  MidiPlay(p);
  EXPECT_EQ(log.back(), "play " + dir + "/a.mid from 0 to 500");
  Wait(0.5);  // no hook: the end goes nowhere and the device stays open
  EXPECT_TRUE(Midi(p).MidiOpen);
  MidiHook(p);
  MidiNotify(p, Midi(p).generation);  // not repeating: an end closes
  EXPECT_FALSE(Midi(p).MidiOpen);
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

// A RIFF file of `depth` LIST chunks, each inside the one before.
std::string NestedLists(const char* form, int depth) {
  std::string lists;
  for (int i = 0; i < depth; ++i) lists += "LIST" + testing::Le(12 * (depth - i) - 8, 4) + "INFO";
  return "RIFF" + testing::Le(4 + lists.size(), 4) + form + lists;
}

// Headers built to hurt: they load and play for the fixed length, and take
// neither the stack nor the time of the program.
TEST_F(MidiTest, HostileHeadersPlayForTheFixedLength) {
  std::ofstream(dir + "/deep.wav", std::ios::binary) << NestedLists("WAVE", 100000);
  std::ofstream(dir + "/deep.avi", std::ios::binary) << NestedLists("AVI ", 100000);
  std::string wav = testing::TestWav(8000, 8000);
  std::string lying = wav;
  lying.replace(16, 4, testing::Le(0xFFFFFFF0, 4));  // "fmt " claims 4 GB
  std::ofstream(dir + "/lying.wav", std::ios::binary) << lying;
  std::ofstream(dir + "/tag.mp3", std::ios::binary) << std::string("ID3\x04\0\0\x7F\x7F\x7F\x7F", 10) + std::string(64, '\xFF');
  for (const char* file : {"deep.wav", "deep.avi", "lying.wav", "tag.mp3"}) {
    SCOPED_TRACE(file);
    MediaPlayer player(p.surface(), "FrmGame", std::string(file).ends_with(".avi") ? "Movie" : "playmp3");
    player.SetFileName(file);
    player.Play();
    Wait(HeadlessPlayers::kUnknownLength - 0.01);
    EXPECT_EQ(player.PlayState(), kPlayPlaying);
    Wait(0.02);
    EXPECT_EQ(player.PlayState(), kPlayStopped);
  }
}

}  // namespace
}  // namespace fw
