#pragma once
#include <string>
#include <string_view>

namespace fw {

// What the player typed, without the blanks around it.
inline std::string_view Trimmed(std::string_view text) {
  std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  std::size_t last = text.find_last_not_of(" \t");
  return text.substr(first, last - first + 1);
}

// ASCII letters in lower case; the rest as it is.
inline std::string Lowercase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return lower;
}

// A command as the player typed it, made comparable: trimmed, in lower case,
// each run of blanks one space.
inline std::string CommandWords(std::string_view line) {
  std::string words;
  for (char c : Lowercase(Trimmed(line))) {
    bool blank = c == ' ' || c == '\t';
    if (blank && !words.empty() && words.back() == ' ') continue;
    words += blank ? ' ' : c;
  }
  return words;
}

}  // namespace fw
