#pragma once
#include <cstdio>
#include <functional>
#include <string>
#include <string_view>

namespace fw {

// Everything the terminal player prints. Into a pipe it goes out byte for
// byte; at a terminal it is wrapped on word boundaries to the terminal's
// width, so no word is cut at the edge. Text is UTF-8.
class TerminalOut {
 public:
  // Wraps when out is a terminal, at its width as it is at each write.
  explicit TerminalOut(std::FILE* out);
  // Wraps at the width width() gives (0: not at all).
  TerminalOut(std::FILE* out, std::function<int()> width) : out_(out), width_(std::move(width)) {}

  void Write(std::string_view text);
  void Printf(const char* format, ...) __attribute__((format(printf, 2, 3)));
  // Sends out what is held back, before the player is asked something.
  void Flush();
  // The player's Enter took the cursor to the start of a line.
  void AtLineStart() { column_ = 0; }
  std::FILE* file() const { return out_; }

 private:
  void PlaceWord(int width);

  std::FILE* out_;
  std::function<int()> width_;
  int column_ = 0;
  std::string word_;    // the word being gathered, not yet out
  std::string spaces_;  // the blanks before it, dropped where the line breaks
};

}  // namespace fw
