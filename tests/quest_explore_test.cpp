// The explorer on a quest whose reachable pages, endings, scores and
// shortest ways are known by construction: a key opens a door from one side
// only, a fight leads to either ending, a wall needs a rope nothing gives,
// and an attic no way leads to.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "app/author_tools.h"

namespace fw {
namespace {

const std::string kQuest = std::string(FABLEWRIGHT_SOURCE_DIR) + "/tests/fixtures/explore/known.fbw";

const std::string kCoverage =
    "Pages reached (7): 1, 2, 3, 4, 5, 6, 8\n"
    "Pages never reached (1): 7\n"
    "Ending at page 4: score 0 to 11\n"
    "  shortest way:\n    option 1 \"Take the key\"\n    option 1 \"Open the door\"\n"
    "Ending at page 5: score 0 to 1\n"
    "  shortest way:\n    option 1 \"Take the key\"\n    option 2 \"Go home\"\n"
    "Dead end at page 8: score -2\n"
    "  shortest way:\n    option 1 \"Take the key\"\n    option 3 \"Climb\"\n";

std::string Explore(std::vector<std::string> args, int expected = 0) {
  std::ostringstream out, err;
  EXPECT_EQ(RunExploreCommand(args, out, err), expected) << err.str();
  return out.str();
}

std::string FileText(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

TEST(QuestExplore, SearchFindsExactlyTheStatesBuiltIn) {
  std::string before = FileText(kQuest);
  // Nine states: the yard, the door (always with the key), the cellar door,
  // the fight, the treasure at 11 and at 0, home at 1 and at 0, the wall.
  EXPECT_EQ(Explore({kQuest}), "States: 9\n" + kCoverage + "Battle at page 6: met in 1 states\n");
  EXPECT_EQ(FileText(kQuest), before);  // played on a copy
}

TEST(QuestExplore, RandomGamesCoverTheSameAndRepeatWithTheSeed) {
  std::string first = Explore({kQuest, "--random", "60", "--seed", "7"});
  EXPECT_EQ(first.rfind("Random games: 60, States: 9\n" + kCoverage, 0), 0u) << first;
  EXPECT_EQ(Explore({kQuest, "--random", "60", "--seed", "7"}), first);
}

TEST(QuestExplore, BoundStopsTheSearchAndSaysSo) {
  std::string out = Explore({kQuest, "--max-states", "3"});
  EXPECT_EQ(out.rfind("States: 3 (bound reached: coverage is partial)\n", 0), 0u) << out;
  Explore({"missing.fbw"}, 2);
}

}  // namespace
}  // namespace fw
