// The scrambler on the worked save of the record format, its ends, and the
// ini command that reads and writes single keys.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "forms/failure.h"
#include "store/ini_command.h"
#include "store/profile.h"
#include "store/records.h"
#include "store/scrambler.h"
#include "test_program.h"

namespace fw {
namespace {

TEST(Scrambler, TheWorkedSaveComesOutByteForByte) {
  EXPECT_EQ(Encode("A dark cave."), std::string({61, 28, 96, 93, 110, 103, 28, 95, 93, 114, 97, 42}));
  EXPECT_EQ(Encode("Go north"), "Ck\x1cjknpd");
  EXPECT_EQ(Encode("Go back"), "Ck\x1c^]_g");
  EXPECT_EQ(Encode("7"), "3");
  EXPECT_EQ(Encode("12"), "-.");
  EXPECT_EQ(Encode("Thera"), "Pdan]");
  EXPECT_EQ(Encode("33"), "//");
  EXPECT_EQ(Encode("15"), "-1");
  EXPECT_EQ(Encode("14"), "-0");
  EXPECT_EQ(Encode("1"), "-");
  EXPECT_EQ(Encode(""), "");
  EXPECT_EQ(Encode("\r\n"), "\x09\x06");
}

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

TEST(Records, LayoutsKeepTheirWritingOrder) {
  EXPECT_STREQ(kSavedGameKeys[7].key, "HowMuchInList");
  EXPECT_FALSE(kSavedGameKeys[7].scrambled);
  EXPECT_STREQ(kSavedGameKeys[12].key, "CharLevel");
  for (std::size_t i = 0; i < std::size(kCharacterKeys); ++i)
    EXPECT_STREQ(kCharacterKeys[i].key, kSavedGameKeys[8 + i].key);
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
