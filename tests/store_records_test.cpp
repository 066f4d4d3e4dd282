// The scrambler's ends and length limit, and the ini command that reads and
// writes single keys. The worked save's bytes are checked by saved_game_test.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "forms/failure.h"
#include "store/ini_command.h"
#include "store/profile.h"
#include "store/scrambler.h"
#include "test_program.h"

namespace fw {
namespace {

TEST(Scrambler, TheShiftHasEndsAndALengthLimit) {
  std::string all;
  for (int c = 4; c < 256; ++c) all += static_cast<char>(c);
  EXPECT_EQ(Decode(Encode(all)), all);
  EXPECT_EQ(Encode(std::string(1, '\x04')), std::string(1, '\0'));
  EXPECT_THROW(Encode(std::string("ok\x03", 3)), Failure);
  EXPECT_THROW(Decode("\xFC"), Failure);
  EXPECT_EQ(Decode("never encoded"), "riziv$irgshih");
  EXPECT_NO_THROW(Encode(std::string(32767, 'x')));
  EXPECT_THROW(Encode(std::string(32768, 'x')), Failure);
}

TEST(IniCommand, GetSetScrambledAndRefusals) {
  testing::TempDir dir;
  std::string file = dir.str() + "/t.sav";
  auto run = [&](std::vector<std::string> args, std::string* printed = nullptr) {
    args.push_back("--home");
    args.push_back(dir.str());
    std::ostringstream out, err;
    int code = RunIniCommand(args, out, err);
    if (printed) *printed = out.str();
    return code;
  };
  std::string out;
  EXPECT_EQ(run({"set", file, "saved game", "Poo", "12", "--scrambled"}), 0);
  EXPECT_EQ(QuestStore(dir.str()).ReadINI(file, "saved game", "Poo"), "-.");
  EXPECT_EQ(run({"get", file, "saved game", "poo", "--scrambled"}, &out), 0);
  EXPECT_EQ(out, "12\n");
  EXPECT_EQ(run({"set", file, "saved game", "room", "caf\xC3\xA9"}), 0);
  EXPECT_EQ(run({"get", file, "saved game", "room"}, &out), 0);
  EXPECT_EQ(out, "caf\xC3\xA9\n");
  EXPECT_EQ(run({"set", "fresh.sav", "a", "b", "\x01", "--scrambled"}), 1);
  EXPECT_FALSE(std::filesystem::exists(dir.str() + "/fresh.sav"));
  EXPECT_EQ(run({"set", file, "saved game", "room", "\xC3\xBC", "--scrambled"}), 0);
  EXPECT_EQ(run({"get", file, "saved game", "room", "--scrambled"}, &out), 0);
  EXPECT_EQ(run({"get", file, "saved game"}), 2);
  EXPECT_EQ(run({"fetch", file, "a", "b"}), 2);
  EXPECT_EQ(run({"get", file, "a", "b", "--loud"}), 2);
}

}  // namespace
}  // namespace fw
