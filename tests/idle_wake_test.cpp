// When a sleeping event loop must wake: a timer whose tick changed nothing
// waits for the next change, so an idle game window has nothing to run,
// while the credits (whose timer moves a picture at every tick), a change
// made by the player and a posted event each wake it.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "forms/controls.h"
#include "shell/forms.h"
#include "test_program.h"

namespace fw {
namespace {

constexpr double kNever = std::numeric_limits<double>::infinity();

struct Idle {
  testing::TestProgram t{AllForms()};
  FormSurface& s() { return t.surface(); }
  ControlId Id(const char* name) { return s().Id("FrmGame", name); }
  // Runs the loop as a window does, one wake after another, for at most
  // the given seconds of the clock; true when it fell asleep by then.
  bool AsleepWithin(double seconds) {
    double end = t.now() + seconds;
    for (;;) {
      double wake = t.program.NextWake();
      if (wake == kNever) return true;
      if (wake > end) return false;
      t.platform.clock.Set(std::max(t.now(), wake));
      t.program.RunEvent([&] { t.program.RunDue(); });
    }
  }
};

TEST(IdleWake, AnIdleGameWindowSleepsUntilAChangeWakesItsTimers) {
  Idle i;
  i.t.program.Start();
  EXPECT_TRUE(i.AsleepWithin(0.05)) << "the timers settle within a few ticks";
  EXPECT_EQ(i.t.program.NextWake(), kNever);

  // A caption given to a hidden option: Timer1 wakes and shows it, then
  // everything settles again.
  i.s().SetCaption(i.Id("Option2"), "Go on");
  double wake = i.t.program.NextWake();
  ASSERT_NE(wake, kNever);
  EXPECT_LE(wake, i.t.now() + 0.010 + 1e-6);
  EXPECT_TRUE(i.AsleepWithin(0.05));
  EXPECT_TRUE(i.s().At(i.Id("Option2")).visible);

  // A posted event is the only wake left, at its own time.
  double due = i.t.now() + 5;
  bool ran = false;
  i.t.program.Post(due, [&](Program&) { ran = true; });
  EXPECT_DOUBLE_EQ(i.t.program.NextWake(), due);
  EXPECT_TRUE(i.AsleepWithin(5.05));
  EXPECT_TRUE(ran);
}

TEST(IdleWake, TheCreditsKeepTheLoopAwakeUntilTheyEnd) {
  Idle i;
  i.t.program.Start();
  ASSERT_TRUE(i.AsleepWithin(0.05));
  i.t.program.RunEvent([&] { i.s().Raise(i.Id("Image9"), Event::Click); });
  // Every tick moves the picture, so no tick settles: the whole run of
  // 854 ticks of 25 ms, and then the loop sleeps again.
  EXPECT_FALSE(i.AsleepWithin(20));
  EXPECT_TRUE(i.s().At(i.Id("credits")).visible);
  EXPECT_TRUE(i.AsleepWithin(2));
  EXPECT_FALSE(i.s().At(i.Id("credits")).visible);
  EXPECT_EQ(i.s().At(i.Id("Image3")).top, 6095);
}

}  // namespace
}  // namespace fw
