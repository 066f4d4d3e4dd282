// The terminal player's output: wrapped on word boundaries at a terminal,
// byte for byte anywhere else.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "bindings/terminal/terminal_out.h"

namespace fw {
namespace {

// Writes the pieces through a TerminalOut of that width (0: a pipe) and
// gives what came out.
std::string Through(int width, std::initializer_list<std::string> pieces, bool flush = true) {
  std::FILE* file = std::tmpfile();
  {
    TerminalOut out(file, [width] { return width; });
    for (const std::string& piece : pieces) out.Write(piece);
    if (flush) out.Flush();
  }
  std::fflush(file);
  std::rewind(file);
  std::string text;
  char buf[256];
  while (std::size_t n = std::fread(buf, 1, sizeof buf, file)) text.append(buf, n);
  std::fclose(file);
  return text;
}

TEST(TerminalOut, WrapsOnWordBoundariesShortOfTheEdge) {
  // Width 11: lines of at most 10 columns, blanks at a break dropped.
  EXPECT_EQ(Through(11, {"one two three four\n"}), "one two\nthree four\n");
  EXPECT_EQ(Through(11, {"abcdefghij klm"}), "abcdefghij\nklm");
  // A word split between two writes stays whole.
  EXPECT_EQ(Through(11, {"one two th", "ree four\n"}), "one two\nthree four\n");
  // Line breaks of the text start the count again; indentation stays.
  EXPECT_EQ(Through(11, {"abc\n  1. de fghij\n"}), "abc\n  1. de\nfghij\n");
  // A word longer than a line starts one of its own, the terminal carries
  // it over, and the text goes on where it ended (column 4 of 11).
  EXPECT_EQ(Through(11, {"a abcdefghijklmno b cdefg\n"}), "a\nabcdefghijklmno b\ncdefg\n");
}

TEST(TerminalOut, CountsACharacterAsOneColumnWhateverItsBytes) {
  EXPECT_EQ(Through(11, {"caf\xC3\xA9 caf\xC3\xA9 ab\n"}), "caf\xC3\xA9 caf\xC3\xA9\nab\n");
}

TEST(TerminalOut, GoesOutByteForByteWithoutAWidth) {
  std::string text = "one two three four five six seven   \n  eight\t nine \xC3\xA9";
  EXPECT_EQ(Through(0, {text}, false), text);
  // The prompt's trailing blank goes out when flushed at a terminal too.
  EXPECT_EQ(Through(11, {"> "}), "> ");
}

}  // namespace
}  // namespace fw
