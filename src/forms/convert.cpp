#include "forms/convert.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "forms/failure.h"

namespace fw {
namespace {

// Blanks that the Basic conversions skip around a number.
bool IsBlank(char c) { return c == ' ' || c == '\t'; }

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Formats with the given significant digits, the way Basic prints numbers.
std::string FormatSignificant(double value, int digits) {
  if (value == 0) return "0";  // also -0
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.*G", digits, value);
  std::string s = buf;
  // %G keeps no trailing zeros but may leave "1E+20"; Basic writes the same.
  return s;
}

}  // namespace

std::optional<double> ParseNumber(std::string_view text) {
  std::size_t i = 0, n = text.size();
  while (i < n && IsBlank(text[i])) ++i;
  while (n > i && IsBlank(text[n - 1])) --n;
  std::string_view t = text.substr(i, n - i);
  std::size_t p = 0;
  if (p < t.size() && (t[p] == '+' || t[p] == '-')) ++p;
  std::size_t digits = 0;
  while (p < t.size() && IsDigit(t[p])) ++p, ++digits;
  if (p < t.size() && t[p] == '.') {
    ++p;
    while (p < t.size() && IsDigit(t[p])) ++p, ++digits;
  }
  if (digits == 0) return std::nullopt;
  if (p < t.size() && (t[p] == 'e' || t[p] == 'E')) {
    std::size_t q = p + 1;
    if (q < t.size() && (t[q] == '+' || t[q] == '-')) ++q;
    std::size_t expDigits = 0;
    while (q < t.size() && IsDigit(t[q])) ++q, ++expDigits;
    if (expDigits == 0) return std::nullopt;
    p = q;
  }
  if (p != t.size()) return std::nullopt;
  std::string copy(t);
  double v = std::strtod(copy.c_str(), nullptr);
  if (!std::isfinite(v)) return std::nullopt;
  return v;
}

double ToDouble(std::string_view text) {
  if (auto v = ParseNumber(text)) return *v;
  throw Failure("Type mismatch");
}

std::string NumberText(double value) { return FormatSignificant(value, 15); }

std::string SingleText(float value) { return FormatSignificant(value, 7); }

double RoundHalfEven(double value) { return std::nearbyint(value); }

std::int16_t ToInt16(double value) {
  double r = RoundHalfEven(value);
  if (!(r >= -32768 && r <= 32767)) throw Failure("Overflow");
  return static_cast<std::int16_t>(r);
}

std::int16_t ToInt16(std::string_view text) { return ToInt16(ToDouble(text)); }

float ToSingle(double value) {
  if (!std::isfinite(value) || std::fabs(value) > std::numeric_limits<float>::max())
    throw Failure("Overflow");
  return static_cast<float>(value);
}

float ToSingle(std::string_view text) { return ToSingle(ToDouble(text)); }

bool IsNumberOne(std::string_view text) {
  auto v = ParseNumber(text);
  return v && *v == 1.0;
}

}  // namespace fw
