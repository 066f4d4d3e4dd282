// The game's dice over 100,000 rolls each (20,000 in the sanitized suite):
// every value in range, every value about equally likely, one reseed per
// loop, and the level gain's sums.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <numeric>
#include <vector>

#include "forms/convert.h"
#include "platform/draw_random.h"
#include "play/battle_hooks.h"
#include "play/draws.h"
#include "play/game_state.h"
#include "shell/forms.h"
#include "test_program.h"

namespace fw {
namespace {

const int kRolls = testing::SmallCases() ? 20000 : 100000;
// The margins grow as the rolls get fewer, by the square root of how many fewer.
const double kSpread = std::sqrt(100000.0 / kRolls);

// A real generator that counts its reseeds and keeps the draws since the last one.
class RecordingRandom : public Random {
 public:
  float Rnd() override {
    float v = inner_.Rnd();
    sinceReseed.push_back(v);
    return v;
  }
  void Randomize(double seed) override {
    ++reseeds;
    sinceReseed.clear();
    inner_.Randomize(seed);
  }
  int reseeds = 0;
  std::vector<float> sinceReseed;

 private:
  DrawRandom inner_;
};

// A program whose Rnd and Randomize go through a RecordingRandom.
struct DiceProgram {
  testing::TestProgram t{AllForms()};
  RecordingRandom random;
  Program program{[this] {
                    Services s = t.platform.services();
                    s.random = &random;
                    return s;
                  }(),
                  AppInfo{t.dir.str(), "fablewright", t.dir.str(), t.dir.str()}, AllForms()};
};

// Each of lo..hi within 10% of an even share of the counted values.
void ExpectEvenSpread(const std::map<int, int>& counts, int lo, int hi) {
  ASSERT_EQ(counts.begin()->first, lo);
  ASSERT_EQ(counts.rbegin()->first, hi);
  int total = std::accumulate(counts.begin(), counts.end(), 0, [](int n, auto& c) { return n + c.second; });
  double share = static_cast<double>(total) / (hi - lo + 1);
  for (auto [value, n] : counts) EXPECT_NEAR(n, share, share * 0.1 * kSpread) << "value " << value;
}

TEST(Dice, HitsAndDamage) {
  DiceProgram d;
  std::map<int, int> hits, damage;
  int misses = 0;
  for (int i = 0; i < kRolls; ++i) {
    int hit = HitDraw(d.program);
    ++hits[hit];
    if (hit <= 30) ++misses;
    ++damage[DamageRoll(d.program)];
  }
  ExpectEvenSpread(hits, 26, 99);
  ExpectEvenSpread(damage, 2, 9);
  EXPECT_NEAR(misses / double(kRolls), 5.0 / 74, 0.005 * kSpread);
  EXPECT_EQ(d.random.reseeds, 2 * kRolls);
}

TEST(Dice, ReRollGivesHitPoints26To49AndStrengthAndDefence11To21) {
  DiceProgram d;
  GameState g(d.program);
  std::map<int, int> hp, atk, def;
  for (int i = 0; i < kRolls; ++i) {
    frmgame::Command10_Click(d.program);
    ++hp[static_cast<int>(ToDouble(g.Text5.Text()))];
    ++atk[static_cast<int>(ToDouble(g.Text4.Text()))];
    ++def[static_cast<int>(ToDouble(g.Text3.Text()))];
  }
  ExpectEvenSpread(hp, 26, 49);
  ExpectEvenSpread(atk, 11, 21);
  ExpectEvenSpread(def, 11, 21);
  EXPECT_EQ(d.random.reseeds, 3 * kRolls);
}

// A level gain's loop: the gain is the sum of all draws, the last of them
// spread evenly above the floor, the rejected ones evenly up to it.
void ExpectLevelGain(int size, int floor, double meanGain) {
  DiceProgram d;
  TextBox box(d.program.surface(), "FrmGame", "Text5");
  std::map<int, int> last, rejected;
  double gains = 0;
  for (int i = 0; i < kRolls; ++i) {
    box.SetText("10");
    GrowBy(d.program, box, size, floor);
    int gain = static_cast<int>(ToDouble(box.Text())) - 10;
    std::vector<int> draws;
    for (float v : d.random.sinceReseed) draws.push_back(static_cast<int>(double(v) * size));
    ASSERT_EQ(gain, std::accumulate(draws.begin(), draws.end(), 0));
    ++last[draws.back()];
    for (std::size_t k = 0; k + 1 < draws.size(); ++k) ++rejected[draws[k]];
    gains += gain;
  }
  ExpectEvenSpread(last, floor + 1, size - 1);
  ExpectEvenSpread(rejected, 0, floor);
  EXPECT_NEAR(gains / kRolls, meanGain, meanGain * 0.02 * kSpread);
  EXPECT_EQ(d.random.reseeds, kRolls);
}

TEST(Dice, LevelGainsAddEveryDraw) {
  // Hit points: 8 to 14 last, with on average 8/7 draws of 0 to 7 before it.
  ExpectLevelGain(15, 7, 8.0 / 7 * 3.5 + 11);
  // Strength and defence: 2 to 4 last, with on average 2/3 draws of 0 or 1.
  ExpectLevelGain(5, 1, 2.0 / 3 * 0.5 + 3);
}

}  // namespace
}  // namespace fw
