#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace fw {

// The loosely typed values of the game logic: numbers live as decimal text and
// are converted at each use, in the Basic manner. Every conversion that can
// fail throws Failure, so a skip-on-error statement drops it whole.

// The number a text holds: blanks around it, a leading sign, digits with an
// optional fraction and an optional exponent. nullopt when it is no number
// (including the empty text).
std::optional<double> ParseNumber(std::string_view text);

// ParseNumber that fails instead of giving nullopt.
double ToDouble(std::string_view text);

// A double as the logic prints it: no leading blank, no point for a whole
// number ("33", "2.5", "-7"), up to 15 significant digits.
std::string NumberText(double value);

// A single-precision value as text, up to 7 significant digits.
std::string SingleText(float value);

// Rounds to the nearest integer, a half going to the even one.
double RoundHalfEven(double value);

// A signed 16-bit integer, rounding halves to even; out of range fails.
std::int16_t ToInt16(double value);
std::int16_t ToInt16(std::string_view text);

// A single-precision value; beyond its range fails.
float ToSingle(double value);
float ToSingle(std::string_view text);

// True when the text is the number 1 ("1", " 1", "1.0", "01"); a blank or
// non-numeric text is not.
bool IsNumberOne(std::string_view text);

}  // namespace fw
