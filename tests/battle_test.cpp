// The fight's draws over many rolls, and the experience rule of a win at its
// boundaries: rounding halves to even, exactly 100 is a level, one level at most.
#include <gtest/gtest.h>

#include <fstream>
#include <map>

#include "play/battle_rules.h"
#include "play/game_state.h"
#include "shell/convert.h"
#include "shell/forms.h"
#include "test_program.h"

namespace fw {
namespace {

void ExpectEvenSpread(const std::map<int, int>& counts, int lo, int hi, int rolls) {
  ASSERT_EQ(counts.begin()->first, lo);
  ASSERT_EQ(counts.rbegin()->first, hi);
  double share = static_cast<double>(rolls) / (hi - lo + 1);
  for (auto [value, n] : counts) EXPECT_NEAR(n, share, share * 0.1) << "value " << value;
}

TEST(BattleDraws, HitsAndDamageStayInRangeAndSpreadEvenly) {
  testing::TestProgram t{AllForms()};
  constexpr int kRolls = 100000;
  std::map<int, int> hits, damage;
  int misses = 0;
  for (int i = 0; i < kRolls; ++i) {
    int hit = HitDraw(t.program);
    ++hits[hit];
    if (hit <= 30) ++misses;
    ++damage[DamageRoll(t.program)];
  }
  ExpectEvenSpread(hits, 26, 99, kRolls);
  ExpectEvenSpread(damage, 2, 9, kRolls);
  EXPECT_NEAR(misses / double(kRolls), 5.0 / 74, 0.005);
}

TEST(BattleRules, ZeroTestComparesTextWithZero) {
  EXPECT_TRUE(AtOrBelowZero("0"));
  EXPECT_TRUE(AtOrBelowZero("-0.5"));
  EXPECT_TRUE(AtOrBelowZero(""));
  EXPECT_FALSE(AtOrBelowZero("0.5"));
  EXPECT_FALSE(AtOrBelowZero("1"));
}

class Win : public ::testing::Test {
 protected:
  testing::TestProgram t{AllForms()};
  Program& p = t.program;
  GameState g{p};

  void Quest(const std::string& monsterExp) {
    std::string path = (t.dir.path / "quest.fbw").string();
    std::ofstream(path) << "[CharacterData]\r\nCharHp=30\r\nCharAtk=11\r\nCharDef=12\r\nCharLevel=1\r\n"
                        << "[2]\r\nBattleMonExp=" << monsterExp << "\r\nBattleWin=3\r\n[3]\r\nPage Text=After.\r\n";
    g.questfil.SetCaption(path);
    g.pg.SetCaption("2");
    g.Text7.SetText("1");
    g.HPPlay.SetMax(30);
    g.HPPlay.SetValue(30);
    Label(p.surface(), "FrmGame", "Label5").SetCaption("20");
  }
  // The experience after a win from `start`, and whether a level came.
  std::pair<float, bool> WinFrom(float start, const std::string& monsterExp) {
    Quest(monsterExp);
    g.exp.SetValue(start);
    WinBattle(p);
    return {g.exp.Value(), g.Text7.Text() == "2"};
  }
};

TEST_F(Win, ExperienceAtTheLevelBoundaries) {
  EXPECT_EQ(WinFrom(60, "40"), std::make_pair(0.0f, true));
  EXPECT_EQ(WinFrom(60, "39"), std::make_pair(99.0f, false));
  EXPECT_EQ(WinFrom(60, "90"), std::make_pair(0.0f, true));
  EXPECT_EQ(WinFrom(99, "0.5"), std::make_pair(0.0f, true));
  EXPECT_EQ(WinFrom(98.5, "1"), std::make_pair(0.0f, true));
  EXPECT_EQ(WinFrom(98.5, "0"), std::make_pair(98.5f, false));
}

TEST_F(Win, OddExperienceValuesKeepTheGaugeInRange) {
  EXPECT_EQ(WinFrom(50, ""), std::make_pair(50.0f, false));
  EXPECT_EQ(WinFrom(50, "lots"), std::make_pair(50.0f, false));
  EXPECT_EQ(WinFrom(50, "-80"), std::make_pair(0.0f, false));
  EXPECT_EQ(WinFrom(0, "40000"), std::make_pair(0.0f, true));
}

TEST_F(Win, LevelGainWritesTheQuestAndDoesNotHeal) {
  WinFrom(60, "40");
  EXPECT_EQ(p.ReadINI(g.questfil.Caption(), "CharacterData", "CharLevel"), "2");
  EXPECT_EQ(p.ReadINI(g.questfil.Caption(), "CharacterData", "CharHp"), g.Text5.Text());
  EXPECT_EQ(g.HPPlay.Max(), ToSingle(g.Text5.Text()));
  EXPECT_EQ(g.HPPlay.Value(), 20.0f);
  EXPECT_TRUE(PictureBox(p.surface(), "FrmGame", "CharCreate").Visible());
  EXPECT_FALSE(CommandButton(p.surface(), "FrmGame", "Command9").Visible());
  EXPECT_EQ(g.pg.Caption(), "3");
}

TEST_F(Win, LevelGainsAreSumsOfDraws) {
  std::map<int, int> hpLast, atkLast;
  for (int i = 0; i < 1000; ++i) {
    WinFrom(0, "100");
    int hp = static_cast<int>(ToDouble(g.Text5.Text())) - 30;
    int atk = static_cast<int>(ToDouble(g.Text4.Text())) - 11;
    int def = static_cast<int>(ToDouble(g.Text3.Text())) - 12;
    ASSERT_GE(hp, 8);
    ASSERT_GE(atk, 2);
    ASSERT_GE(def, 2);
    // The last draw is the accepted one; what lies under it is a sum of
    // rejected ones, so a gain above the accepted range is possible.
    ++hpLast[std::min(hp, 15)];
    ++atkLast[std::min(atk, 5)];
  }
  // Gains past the accepted range show that the rejected draws are added.
  EXPECT_GT(hpLast[15], 0);
  EXPECT_GT(atkLast[5], 0);
  EXPECT_GT(hpLast[8], 0);
  EXPECT_GT(atkLast[2], 0);
}

}  // namespace
}  // namespace fw
