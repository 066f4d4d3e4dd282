#include "forms/codepage.h"

#include <array>
#include <cstdint>

namespace fw {
namespace {

// Code points of bytes 0x80..0x9F; the rest of the code page equals Latin-1.
// The unassigned 0x81, 0x8D, 0x8F, 0x90 and 0x9D keep their C1 values.
constexpr std::array<char32_t, 32> kHigh = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// Appends one code point as UTF-8.
void AppendUtf8(std::string& out, char32_t cp) {
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

// The byte for a code point, or '?' when the code page has none.
char ByteFor(char32_t cp) {
  if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) return static_cast<char>(cp);
  for (std::size_t i = 0; i < kHigh.size(); ++i)
    if (kHigh[i] == cp) return static_cast<char>(0x80 + i);
  return '?';
}

}  // namespace

std::string Utf8FromCp1252(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (unsigned char c : text) {
    if (c < 0x80) out += static_cast<char>(c);
    else if (c < 0xA0) AppendUtf8(out, kHigh[c - 0x80]);
    else AppendUtf8(out, c);
  }
  return out;
}

std::string Cp1252FromUtf8(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  std::size_t i = 0;
  while (i < text.size()) {
    auto c = static_cast<unsigned char>(text[i]);
    int extra = c < 0x80 ? 0 : (c & 0xE0) == 0xC0 ? 1 : (c & 0xF0) == 0xE0 ? 2 : (c & 0xF8) == 0xF0 ? 3 : -1;
    if (extra < 0 || i + extra >= text.size()) {
      out += '?';
      ++i;
      continue;
    }
    char32_t cp = extra == 0 ? c : c & (0x3F >> extra);
    bool ok = true;
    for (int k = 1; k <= extra; ++k) {
      auto cc = static_cast<unsigned char>(text[i + k]);
      if ((cc & 0xC0) != 0x80) { ok = false; break; }
      cp = (cp << 6) | (cc & 0x3F);
    }
    if (!ok) {
      out += '?';
      ++i;
      continue;
    }
    out += ByteFor(cp);
    i += extra + 1;
  }
  return out;
}

}  // namespace fw
