// The fight's test for "at or below zero": the label's text against "0".
#include <gtest/gtest.h>

#include "play/battle_rules.h"

namespace fw {
namespace {

TEST(BattleRules, ZeroTestComparesTextWithZero) {
  EXPECT_TRUE(AtOrBelowZero("0"));
  EXPECT_TRUE(AtOrBelowZero("-0.5"));
  EXPECT_TRUE(AtOrBelowZero("-12"));
  EXPECT_TRUE(AtOrBelowZero(""));
  EXPECT_FALSE(AtOrBelowZero("0.5"));
  EXPECT_FALSE(AtOrBelowZero("1"));
  EXPECT_FALSE(AtOrBelowZero("100"));
}

}  // namespace
}  // namespace fw
