// Reads served from one image of a quest while a tool plays it: the same
// values as from the disk, and a write still reaches the disk and the image.
#include <gtest/gtest.h>

#include <fstream>

#include "store/program_store.h"
#include "test_program.h"

namespace fw {
namespace {

TEST(ServedImage, ReadsAsTheDiskAndFollowsWrites) {
  testing::TestProgram t({});
  std::string quest = t.dir.str() + "/q.fbw";
  std::ofstream(quest) << "[1]\nLocation=Yard\n[CharacterData]\nCharHp=30\n";
  ASSERT_TRUE(ServeFromImage(t.program, quest));
  // Changed behind the image's back: the image holds what it read.
  std::ofstream(quest) << "[1]\nLocation=Changed\n[CharacterData]\nCharHp=30\n";
  EXPECT_EQ(ReadINI(t.program, quest, "1", "location"), "Yard");
  EXPECT_EQ(ReadINI(t.program, quest, std::string("1\0x", 3), "Location"), "Yard");
  WriteINI(t.program, quest, "CharacterData", "CharHp", "41");
  EXPECT_EQ(ReadINI(t.program, quest, "CharacterData", "CharHp"), "41");
  EXPECT_EQ(ReadINI(t.program, quest, "1", "Location"), "Changed");  // read afresh after the write
  StopServingFromImage(t.program);
  std::ofstream(quest) << "[1]\nLocation=Disk\n";
  EXPECT_EQ(ReadINI(t.program, quest, "1", "Location"), "Disk");
  EXPECT_FALSE(ServeFromImage(t.program, t.dir.str() + "/missing.fbw"));
}

}  // namespace
}  // namespace fw
