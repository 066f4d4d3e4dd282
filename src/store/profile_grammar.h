#pragma once
// The profile grammar's pieces, shared by the key-by-key reader and the
// whole-file image, so that both read a file alike.
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace fw::profile_grammar {

inline constexpr std::string_view kBom = "\xEF\xBB\xBF";

// Blanks trimmed around section names, keys and values.
inline bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\v' || c == '\f'; }

// The text without blanks at either end.
inline std::string_view Trim(std::string_view s) {
  std::size_t b = 0, e = s.size();
  while (b < e && IsBlank(s[b])) ++b;
  while (e > b && IsBlank(s[e - 1])) --e;
  return s.substr(b, e - b);
}

// ASCII letters folded to lower case, as section and key lookups compare them.
inline char FoldAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c; }

// The name with its ASCII letters in lower case, as names are compared.
inline std::string Folded(std::string_view s) {
  std::string out(s);
  for (char& c : out) c = FoldAscii(c);
  return out;
}

inline bool SameNoCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (FoldAscii(a[i]) != FoldAscii(b[i])) return false;
  return true;
}

// One line: its content [begin, end) and where the next line starts. CR LF,
// LF and a lone CR all end a line.
struct Line {
  std::size_t begin, end, next;
};

inline Line LineAt(std::string_view t, std::size_t begin) {
  const char* start = t.data() + begin;
  std::size_t left = t.size() - begin;
  const void* lf = std::memchr(start, '\n', left);
  // A CR can only end the line before the first LF.
  std::size_t limit = lf ? static_cast<const char*>(lf) - start : left;
  const void* cr = std::memchr(start, '\r', limit);
  std::size_t end = begin + (cr ? static_cast<const char*>(cr) - start : limit);
  std::size_t next = end;
  if (next < t.size()) next += (t[next] == '\r' && next + 1 < t.size() && t[next + 1] == '\n') ? 2 : 1;
  return {begin, end, next};
}

// The first non-blank character of a line, or 0 for a blank line.
inline char Lead(std::string_view line) {
  for (char c : line)
    if (!IsBlank(c)) return c;
  return 0;
}

// True for a key line (no comment, with an "="), giving its stored key
// trimmed.
inline bool KeyOfLine(std::string_view line, std::string_view& key) {
  std::size_t eq = line.find('=');
  if (Lead(line) == ';' || eq == std::string_view::npos) return false;
  key = Trim(line.substr(0, eq));
  return true;
}

// The value of a key line as a read gives it: trimmed, one pair of matching
// quotes taken off, cut to `maxLength` characters.
inline std::string_view ValueOfLine(std::string_view line, std::size_t maxLength) {
  std::string_view value = Trim(line.substr(line.find('=') + 1));
  if (value.size() > 1 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
    value = value.substr(1, value.size() - 2);
  return value.substr(0, maxLength);
}

}  // namespace fw::profile_grammar
