// The FluidSynth voice, with no sound card: it renders a generated tune and
// the tune's end comes back on the program's own thread.
#include <gtest/gtest.h>

#include <fstream>

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

}  // namespace
}  // namespace fw
