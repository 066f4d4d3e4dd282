// The terminal player through a plain pipe, as a screen reader or a script
// would drive it.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "test_program.h"

namespace fw {
namespace {

// Runs the player with the given input; gives everything it printed.
std::string Play(const std::string& quest, const std::string& input, const std::string& home) {
  std::string command = "printf '" + input + "' | " + FABLEWRIGHT_BIN + " play --silent '" + quest +
                        "' --home '" + home + "' 2>/dev/null";
  std::FILE* pipe = ::popen(command.c_str(), "r");
  std::string out;
  char buf[4096];
  while (std::size_t n = std::fread(buf, 1, sizeof buf, pipe)) out.append(buf, n);
  EXPECT_EQ(::pclose(pipe), 0);
  return out;
}

TEST(TerminalPlayer, PlaysTwoStepsThroughAPipeInPlainUtf8) {
  testing::TempDir dir;
  std::string quest = dir.str() + "/mill.fbw";
  std::ofstream(quest, std::ios::binary)
      << "[Story Info]\r\nTitle=The Old Mill\r\nAuthor=A. Writer\r\nVersion=1.0\r\n"
         "[1]\r\nLocation=The gate\r\nPage Text=A rusty key lies in the grass by the caf\xE9.\r\n"
         "Option One=Take the key and go on\r\nOption One Score=+5\r\nOption One Destination Page=2\r\n"
         "Key Item1=Rusty key\r\nAdd1=1\r\nRequired1=0\r\n"
         "Option Two=Go on\r\nOption Two Destination Page=2\r\n"
         "[2]\r\nLocation=The door\r\nPage Text=The door is locked.\r\n"
         "Option One=Unlock the door\r\nOption One Destination Page=3\r\nKey Item1=Rusty key\r\nRequired1=1\r\n";
  std::string out = Play(quest, "7\\n1\\n1\\nopen\\nmaybe\\nn\\nopen\\ny\\n\\n", dir.str());
  EXPECT_NE(out.find("The Old Mill\n-----"), std::string::npos) << out;
  EXPECT_NE(out.find("by the caf\xC3\xA9."), std::string::npos) << out;
  EXPECT_NE(out.find("  1. Take the key and go on\n  2. Go on\n"), std::string::npos) << out;
  EXPECT_NE(out.find("There is no option 7 here."), std::string::npos) << out;
  EXPECT_NE(out.find(">\nThe door is locked.\n  1. Unlock the door\n> "), std::string::npos) << out;
  EXPECT_NE(out.find("(No options."), std::string::npos) << out;
  // Message boxes become prompts, a file dialog a path prompt.
  EXPECT_NE(out.find("[WARNING!!!!] Are you sure? This will end the current game without saving!\nYes or no (y/n)? "
                     "Yes or no (y/n)? "),
            std::string::npos)
      << out;
  EXPECT_NE(out.find("Open file (*.fbw), empty to cancel: "), std::string::npos) << out;
  EXPECT_EQ(out.find('\x1b'), std::string::npos) << "control codes in a pipe";
}

}  // namespace
}  // namespace fw
