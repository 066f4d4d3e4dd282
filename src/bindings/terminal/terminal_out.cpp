#include "bindings/terminal/terminal_out.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdarg>
#include <vector>

namespace fw {
namespace {

// Columns a UTF-8 text takes: one a character. All the game's own text comes
// from Windows-1252, which has no wide or combining characters.
int Columns(std::string_view utf8) {
  int n = 0;
  for (unsigned char c : utf8)
    if ((c & 0xC0) != 0x80) ++n;
  return n;
}

}  // namespace

TerminalOut::TerminalOut(std::FILE* out) : out_(out) {
  int fd = ::fileno(out);
  if (!::isatty(fd)) return;
  width_ = [fd] {
    winsize size{};
    return ::ioctl(fd, TIOCGWINSZ, &size) == 0 ? static_cast<int>(size.ws_col) : 80;
  };
}

void TerminalOut::Write(std::string_view text) {
  // Lines stop one short of the edge: a terminal that wraps at once on the
  // last column would add an empty line after a full one.
  int width = width_ ? width_() - 1 : 0;
  if (width <= 0) {
    std::fwrite(text.data(), 1, text.size(), out_);
    std::fflush(out_);
    return;
  }
  for (char c : text) {
    if (c == '\n') {
      PlaceWord(width);
      spaces_.clear();
      std::fputc('\n', out_);
      column_ = 0;
    } else if (c == ' ' || c == '\t') {
      PlaceWord(width);
      spaces_ += c;
    } else {
      word_ += c;
    }
  }
}

void TerminalOut::Printf(const char* format, ...) {
  va_list args;
  va_start(args, format);
  va_list again;
  va_copy(again, args);
  int n = std::vsnprintf(nullptr, 0, format, args);
  va_end(args);
  std::vector<char> text(static_cast<std::size_t>(n > 0 ? n : 0) + 1);
  std::vsnprintf(text.data(), text.size(), format, again);
  va_end(again);
  Write(std::string_view(text.data(), text.size() - 1));
}

void TerminalOut::Flush() {
  int width = width_ ? width_() - 1 : 0;
  if (width > 0) {
    PlaceWord(width);
    std::fputs(spaces_.c_str(), out_);
    column_ += Columns(spaces_);
    spaces_.clear();
  }
  std::fflush(out_);
}

// The gathered word goes on this line after its blanks if it fits, else on
// the next without them. A word longer than a line is left to the terminal.
void TerminalOut::PlaceWord(int width) {
  if (word_.empty()) return;
  int gap = Columns(spaces_);
  int length = Columns(word_);
  if (column_ > 0 && column_ + gap + length > width) {
    std::fputc('\n', out_);
    column_ = 0;
  } else {
    std::fputs(spaces_.c_str(), out_);
    column_ += gap;
  }
  spaces_.clear();
  std::fputs(word_.c_str(), out_);
  column_ = (column_ + length) % (width + 1);
  word_.clear();
}

}  // namespace fw
