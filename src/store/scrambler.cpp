#include "store/scrambler.h"

#include "forms/failure.h"

namespace fw {
namespace {

// The longest text the shift takes: its length is a signed 16-bit number.
constexpr std::size_t kMaxLength = 32767;

// Moves every code by delta; a code that would leave 0..255 fails the whole
// text, so no part of it is returned.
std::string Shift(std::string_view text, int delta) {
  if (text.size() > kMaxLength) throw Failure("Out of string space");
  std::string out(text);
  for (char& c : out) {
    int code = static_cast<unsigned char>(c) + delta;
    if (code < 0 || code > 255) throw Failure("Invalid procedure call or argument");
    c = static_cast<char>(code);
  }
  return out;
}

}  // namespace

std::string Encode(std::string_view text) { return Shift(text, -4); }

std::string Decode(std::string_view text) { return Shift(text, +4); }

}  // namespace fw
