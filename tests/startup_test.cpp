// What a start loads: the jobs without a window load no part of the window
// toolkit, those without sound no part of FluidSynth, those that measure no
// MP3 no MP3 decoder, and those that draw no map no part of Graphviz; the
// game window's module is loaded only when a window opens, from beside the
// executable or from lib/ beside it, the MIDI voice's only at the first tune,
// and the map's only for a map. The dynamic loader's own trace (LD_DEBUG)
// tells which libraries a run loaded.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "app/modules.h"
#include "test_media.h"
#include "test_program.h"

namespace fw {
namespace {

namespace fs = std::filesystem;

const fs::path kBin = FABLEWRIGHT_BIN;

struct Ran {
  int code = -1;
  std::string out;     // both streams
  std::string loaded;  // the loader's trace
};

// Runs the program with `args` in dir, with no display but the platform
// given, for at most `seconds`, and the loader's trace of every library it
// loaded.
Ran RunTraced(const fs::path& dir, const std::string& platform, const fs::path& bin, const std::string& args,
              int seconds = 60) {
  fs::path trace = dir / "trace";
  std::string line = "cd '" + dir.string() + "' && env -u DISPLAY -u WAYLAND_DISPLAY QT_QPA_PLATFORM=" + platform +
                     " LD_DEBUG=files LD_DEBUG_OUTPUT='" + trace.string() + "' timeout -s KILL " +
                     std::to_string(seconds) + " '" + bin.string() + "' " + args + " 2>&1";
  std::FILE* pipe = ::popen(line.c_str(), "r");
  Ran r;
  char buf[4096];
  while (std::size_t n = std::fread(buf, 1, sizeof buf, pipe)) r.out.append(buf, n);
  int status = ::pclose(pipe);
  if (WIFEXITED(status)) r.code = WEXITSTATUS(status);
  for (const auto& entry : fs::directory_iterator(dir)) {
    if (!entry.path().filename().string().starts_with("trace.")) continue;
    std::ostringstream text;
    text << std::ifstream(entry.path()).rdbuf();
    r.loaded += text.str();
    fs::remove(entry.path());
  }
  return r;
}

bool LoadedQt(const Ran& r) { return r.loaded.find("file=libQt6") != std::string::npos; }
bool LoadedFluidSynth(const Ran& r) { return r.loaded.find("file=libfluidsynth") != std::string::npos; }
bool LoadedGraphviz(const Ran& r) { return r.loaded.find("file=libgvc") != std::string::npos; }
bool LoadedMpg123(const Ran& r) { return r.loaded.find("file=libmpg123") != std::string::npos; }

TEST(Startup, JobsWithoutAWindowLoadNoWindowToolkit) {
  testing::TempDir dir;
  std::ofstream(dir.path / "q.fbw", std::ios::binary) << "[Quest Data]\r\nNumber Of Pages=1\r\n[1]\r\nPage Text=Here.\r\n";
  std::ofstream(dir.path / "s.txt") << "expect FrmGame.Visible == \"True\"\n";
  // A quest whose first page has a tune, the shortest there is, and one
  // whose first page has an MP3 track.
  std::ofstream(dir.path / "tune.fbw", std::ios::binary) << "[1]\r\nPage Text=Here.\r\nMusic=t.mid\r\n";
  std::ofstream(dir.path / "t.mid", std::ios::binary)
      << std::string("MThd\0\0\0\x06\0\0\0\x01\0\x60MTrk\0\0\0\x04\0\xFF\x2F\0", 22);
  std::ofstream(dir.path / "track.fbw", std::ios::binary) << "[1]\r\nPage Text=Here.\r\nMp3=t.mp3\r\n";
  std::ofstream(dir.path / "t.mp3", std::ios::binary) << testing::TestMp3(1, 48000, std::vector<int>(10, 128));
  // Each job, whether it plays a tune with sound, and whether it measures an MP3.
  struct Job {
    const char* args;
    bool sound, mp3;
  } jobs[] = {{"--version", false, false},
              {"ini get ./q.fbw 1 \"Page Text\"", false, false},
              {"check q.fbw", false, false},
              {"script s.txt --home .", false, false},
              {"play q.fbw --home . --silent </dev/null", false, false},
              {"q.fbw --home . </dev/null", false, false},
              {"tune.fbw --home . </dev/null", true, false},
              {"track.fbw --home . </dev/null", false, true}};
  for (const auto& [args, sound, mp3] : jobs) {
    Ran r = RunTraced(dir.path, "", kBin, args);
    EXPECT_EQ(r.code, 0) << args << ": " << r.out;
    EXPECT_NE(r.loaded.find("file="), std::string::npos) << args << ": the loader traced nothing";
    EXPECT_FALSE(LoadedQt(r)) << args;
    EXPECT_EQ(r.loaded.find("fablewright-window.so"), std::string::npos) << args;
    EXPECT_EQ(LoadedFluidSynth(r), sound) << args;
    EXPECT_FALSE(LoadedGraphviz(r)) << args;
    EXPECT_EQ(r.loaded.find("fablewright-map.so"), std::string::npos) << args;
    // FluidSynth's sound-file library brings the MP3 decoder too.
    EXPECT_EQ(LoadedMpg123(r), mp3 || sound) << args;
    // Without a sound card the sound libraries' reports stay off the terminal.
    EXPECT_EQ(r.out.find("ALSA"), std::string::npos) << args << ": " << r.out;
  }
  // The terminal player with sound has its MIDI voice from the module
  // beside the program, at the first tune.
  Ran sound = RunTraced(dir.path, "", kBin, "play tune.fbw --home . </dev/null");
  EXPECT_NE(sound.loaded.find("file=" + (kBin.parent_path() / "fablewright-sound.so").string()), std::string::npos);
  EXPECT_TRUE(LoadedFluidSynth(sound));
}

TEST(Startup, AWindowLoadsItsModuleFromBesideTheProgramOrFromLibBesideIt) {
  testing::TempDir dir;
  std::ofstream(dir.path / "q.fbw", std::ios::binary) << "[1]\r\nPage Text=Here.\r\n";
  // The window stays open until the player closes it: the run is stopped.
  Ran beside = RunTraced(dir.path, "offscreen", kBin, "q.fbw --home .", 5);
  EXPECT_NE(beside.loaded.find("file=" + (kBin.parent_path() / "fablewright-window.so").string()), std::string::npos);
  EXPECT_TRUE(LoadedQt(beside));
  EXPECT_EQ(beside.code, 128 + 9) << "the window did not stay open until stopped: " << beside.out;

  // A copy of the program with its module in lib/, and one without it,
  // which plays in the terminal instead and says why.
  fs::create_directories(dir.path / "copy" / "lib");
  fs::copy_file(kBin, dir.path / "copy" / "fablewright");
  fs::copy_file(kBin.parent_path() / "fablewright-window.so", dir.path / "copy" / "lib" / "fablewright-window.so");
  Ran fromLib = RunTraced(dir.path, "offscreen", dir.path / "copy" / "fablewright", "q.fbw --home .", 5);
  EXPECT_NE(fromLib.loaded.find("file=" + (dir.path / "copy" / "lib" / "fablewright-window.so").string()),
            std::string::npos);
  EXPECT_EQ(fromLib.code, 128 + 9) << fromLib.out;

  fs::remove(dir.path / "copy" / "lib" / "fablewright-window.so");
  Ran without = RunTraced(dir.path, "offscreen", dir.path / "copy" / "fablewright",
                    "q.fbw --home . </dev/null");
  EXPECT_EQ(without.code, 0);
  EXPECT_TRUE(without.out.starts_with("fablewright: cannot open a window: fablewright-window.so is not beside the "
                                      "program, in lib/ beside it, nor in "))
      << without.out;
  EXPECT_NE(without.out.find("fablewright: playing in the terminal instead\n"), std::string::npos) << without.out;
  EXPECT_NE(without.out.find("Here."), std::string::npos) << without.out;
  EXPECT_FALSE(LoadedQt(without));
}

TEST(Startup, AMapLoadsGraphvizFromItsModuleAndWithoutItSaysWhy) {
  testing::TempDir dir;
  std::ofstream(dir.path / "q.fbw", std::ios::binary) << "[1]\r\nPage Text=Here.\r\n";
  Ran map = RunTraced(dir.path, "", kBin, "map q.fbw -o q.svg");
  EXPECT_EQ(map.code, 0) << map.out;
  EXPECT_NE(map.loaded.find("file=" + (kBin.parent_path() / kMapModuleName).string()), std::string::npos);
  EXPECT_TRUE(LoadedGraphviz(map));
  EXPECT_FALSE(LoadedQt(map));

  fs::create_directories(dir.path / "copy");
  fs::copy_file(kBin, dir.path / "copy" / "fablewright");
  Ran noMap = RunTraced(dir.path, "", dir.path / "copy" / "fablewright", "map q.fbw -o other.svg");
  EXPECT_EQ(noMap.code, 1);
  EXPECT_TRUE(noMap.out.starts_with("fablewright: Graphviz could not start: fablewright-map.so is not beside the "
                                    "program, in lib/ beside it, nor in "))
      << noMap.out;
  EXPECT_FALSE(fs::exists(dir.path / "other.svg"));
}

TEST(Startup, TheSoundModuleGivesTheMidiVoiceAndAnythingElseGivesSilence) {
  std::string module = FindModule(kBin.parent_path().string(), kSoundModuleName);
  EXPECT_EQ(module, (kBin.parent_path() / kSoundModuleName).string());
  std::unique_ptr<Sequencer> voice = LoadSoundSequencer(module, "");
  ASSERT_TRUE(voice);
  EXPECT_FALSE(voice->Open("/nonexistent.mid"));
  EXPECT_FALSE(LoadSoundSequencer("", ""));
  EXPECT_FALSE(LoadSoundSequencer(kBin.string(), ""));  // no module at all
  testing::TempDir dir;
  std::ofstream(dir.path / "fake.so") << "not a library";
  EXPECT_FALSE(LoadSoundSequencer((dir.path / "fake.so").string(), ""));
}

}  // namespace
}  // namespace fw
