// Re-Roll over many draws: every value in range, every value about equally
// likely, and one reseed per loop however many draws a loop rejects.
#include <gtest/gtest.h>

#include <map>

#include "play/battle_hooks.h"
#include "play/game_state.h"
#include "shell/convert.h"
#include "shell/forms.h"
#include "test_program.h"

namespace fw {
namespace {

// Counts the reseeds and passes draws on to a real generator.
class CountingRandom : public Random {
 public:
  float Rnd() override { return inner.Rnd(); }
  void Randomize(double seed) override {
    ++reseeds;
    inner.Randomize(seed);
  }
  DrawRandom inner;
  int reseeds = 0;
};

// Each value of lo..hi within 10% of an even share of the rolls.
void ExpectEvenSpread(const std::map<int, int>& counts, int lo, int hi, int rolls) {
  ASSERT_EQ(counts.begin()->first, lo);
  ASSERT_EQ(counts.rbegin()->first, hi);
  double share = static_cast<double>(rolls) / (hi - lo + 1);
  for (auto [value, n] : counts) EXPECT_NEAR(n, share, share * 0.1) << "value " << value;
}

TEST(ReRoll, HundredThousandRollsStayInRangeAndSpreadEvenly) {
  testing::TestProgram t{AllForms()};
  CountingRandom random;
  Services services = t.platform.services();
  services.random = &random;
  Program p(services, AppInfo{t.dir.str(), "fablewright", t.dir.str(), t.dir.str()}, AllForms());
  GameState g(p);
  constexpr int kRolls = 100000;
  std::map<int, int> hp, atk, def;
  for (int i = 0; i < kRolls; ++i) {
    frmgame::Command10_Click(p);
    ++hp[static_cast<int>(ToDouble(g.Text5.Text()))];
    ++atk[static_cast<int>(ToDouble(g.Text4.Text()))];
    ++def[static_cast<int>(ToDouble(g.Text3.Text()))];
  }
  ExpectEvenSpread(hp, 26, 49, kRolls);
  ExpectEvenSpread(atk, 11, 21, kRolls);
  ExpectEvenSpread(def, 11, 21, kRolls);
  EXPECT_EQ(random.reseeds, 3 * kRolls);
}

}  // namespace
}  // namespace fw
