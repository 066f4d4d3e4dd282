// The FluidSynth voice, with no sound card: it renders a generated tune and
// the tune's end comes back on the program's own thread.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "media/midi_api.h"
#include "media/midi_state.h"
#include "media/smf.h"
#include "platform/fluid_sequencer.h"
#include "shell/forms.h"
#include "test_program.h"

namespace fw {
namespace {

TEST(FluidSequencer, RendersAToneAndRestartsAtTheEndOfTheTune) {
  if (FindSoundfont().empty()) GTEST_SKIP() << "no General MIDI soundfont installed";
  testing::TempDir dir;
  std::vector<MidiNote> notes;
  for (std::uint32_t i = 0; i < 4; ++i) notes.push_back({i * 240, 240, static_cast<std::uint8_t>(64 + i), 110});
  std::ofstream(dir.str() + "/tune.mid", std::ios::binary) << WriteMidi(notes, 480, 500000, 0);
  std::ofstream(dir.str() + "/junk.mid") << "not a tune";

  FluidSequencer fluid(false);
  HeadlessPlatform platform;
  Services services = platform.services();
  services.sequencer = &fluid;
  Program p(services, AppInfo{dir.str(), "fablewright", dir.str(), dir.str()}, AllForms());

  StartMidi(p, "junk.mid", true, 1);
  EXPECT_FALSE(Midi(p).MidiOpen);  // refused: silence, no failure

  StartMidi(p, "tune.mid", true, 1);
  ASSERT_TRUE(Midi(p).MidiOpen);
  EXPECT_GT(fluid.Render(0.5), 0.01f);
  std::uint32_t tune = Midi(p).generation;
  platform.clock.Set(platform.clock.Now() + 1.0);  // the tune lasts one second
  p.RunDue();
  EXPECT_GT(Midi(p).generation, tune);  // played again, here, on this thread
  EXPECT_TRUE(Midi(p).MidiOpen);
  EXPECT_GT(fluid.Render(0.3), 0.01f);
  Command2_Click(p);
  fluid.Render(1.0);  // the release tail dies away
  EXPECT_LT(fluid.Render(0.2), 0.001f);
}

// A synth with nothing to play renders silence for as long as its driver
// runs. Here the driver writes a WAV file, which grows while a tune plays,
// stops once the tune is closed, and starts again with the next tune.
TEST(FluidSequencer, FeedsTheSoundCardOnlyWhileATuneIsOpen) {
  if (FindSoundfont().empty()) GTEST_SKIP() << "no General MIDI soundfont installed";
  testing::TempDir dir;
  std::ofstream(dir.str() + "/tune.mid", std::ios::binary) << WriteMidi({{0, 4800, 64, 110}}, 480, 500000, 0);
  std::string wav = dir.str() + "/card.wav";
  FluidSequencer fluid(true, FindSoundfont(), wav);
  HeadlessPlatform platform;
  Services services = platform.services();
  services.sequencer = &fluid;
  Program p(services, AppInfo{dir.str(), "fablewright", dir.str(), dir.str()}, AllForms());
  auto size = [&] {
    std::error_code ec;
    auto bytes = std::filesystem::file_size(wav, ec);
    return ec ? 0 : bytes;
  };
  // Growing within three seconds, however busy the machine; still for 300 ms.
  auto grows = [&] {
    auto before = size();
    for (int wait = 0; wait < 60 && size() <= before; ++wait) std::this_thread::sleep_for(std::chrono::milliseconds(50));
    return size() > before;
  };
  auto still = [&] {
    auto before = size();
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    return size() == before;
  };

  EXPECT_FALSE(std::filesystem::exists(wav));  // no tune yet, no sound
  StartMidi(p, "tune.mid", true, 1);
  ASSERT_TRUE(Midi(p).MidiOpen);
  EXPECT_TRUE(grows());
  Command2_Click(p);
  EXPECT_TRUE(still());
  StartMidi(p, "tune.mid", true, 1);
  EXPECT_TRUE(grows());
}

}  // namespace
}  // namespace fw
