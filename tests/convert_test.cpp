// Number conversions in the Basic manner, and the code page at the boundary.
#include <gtest/gtest.h>

#include "forms/codepage.h"
#include "forms/convert.h"
#include "forms/failure.h"

namespace fw {
namespace {

TEST(Convert, ParsesSignsFractionsBlanksAndRejectsTheRest) {
  EXPECT_EQ(ParseNumber("+2"), 2);
  EXPECT_EQ(ParseNumber(" -2 "), -2);
  EXPECT_EQ(ParseNumber("2.5"), 2.5);
  EXPECT_EQ(ParseNumber(".5"), 0.5);
  EXPECT_EQ(ParseNumber("5."), 5);
  EXPECT_EQ(ParseNumber("1e3"), 1000);
  for (const char* bad : {"", " ", "abc", "+", "-", ".", "1.2.3", "2x", "1e", "--1", "1 2"})
    EXPECT_FALSE(ParseNumber(bad)) << bad;
  EXPECT_THROW(ToDouble("abc"), Failure);
}

TEST(Convert, PrintsNumbersWithoutBlankOrNeedlessPoint) {
  EXPECT_EQ(NumberText(33), "33");
  EXPECT_EQ(NumberText(2.5), "2.5");
  EXPECT_EQ(NumberText(-7), "-7");
  EXPECT_EQ(NumberText(-0.0), "0");
  EXPECT_EQ(NumberText(0.1 + 0.2), "0.3");
  EXPECT_EQ(SingleText(0.1f), "0.1");
  EXPECT_EQ(SingleText(49.0f), "49");
}

TEST(Convert, SixteenBitIntegersRoundHalfToEvenAndFailOutsideTheRange) {
  EXPECT_EQ(ToInt16(2.5), 2);
  EXPECT_EQ(ToInt16(3.5), 4);
  EXPECT_EQ(ToInt16(-2.5), -2);
  EXPECT_EQ(ToInt16(99.5), 100);
  EXPECT_EQ(ToInt16(98.5), 98);
  EXPECT_EQ(ToInt16(32767.0), 32767);
  EXPECT_EQ(ToInt16(-32768.4), -32768);
  EXPECT_THROW(ToInt16(32767.5), Failure);
  EXPECT_THROW(ToInt16(-32769.0), Failure);
  EXPECT_THROW(ToInt16("x"), Failure);
}

TEST(Convert, NumberOneMeansTheNumberNotTheText) {
  EXPECT_TRUE(IsNumberOne("1"));
  EXPECT_TRUE(IsNumberOne("01"));
  EXPECT_TRUE(IsNumberOne(" 1.0"));
  EXPECT_FALSE(IsNumberOne(""));
  EXPECT_FALSE(IsNumberOne("yes"));
  EXPECT_FALSE(IsNumberOne("2"));
}

TEST(Codepage, EveryByteSurvivesTheRoundTripAndForeignCharactersBecomeQuestionMarks) {
  std::string all;
  for (int c = 0; c < 256; ++c) all += static_cast<char>(c);
  EXPECT_EQ(Cp1252FromUtf8(Utf8FromCp1252(all)), all);
  EXPECT_EQ(Utf8FromCp1252("caf\xE9 \x80"), "caf\xC3\xA9 \xE2\x82\xAC");
  EXPECT_EQ(Cp1252FromUtf8("\xE2\x82\xAC \xE6\x97\xA5 \xF0\x9F\x98\x80"), "\x80 ? ?");
  EXPECT_EQ(Cp1252FromUtf8("bad \xC3"), "bad ?");
  EXPECT_EQ(Cp1252FromUtf8("bad \xC3x"), "bad ?x");
}

}  // namespace
}  // namespace fw
