// The explorer on a quest whose reachable pages, endings, scores and
// shortest ways are known by construction: a key opens a door from one side
// only, a fight leads to either ending, a wall needs a rope nothing gives,
// and an attic no way leads to.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <thread>

#include "app/author_tools.h"
#include "bindings/headless/headless_services.h"
#include "editor/battle_balance.h"
#include "forms/program.h"
#include "play/game_state.h"
#include "shell/forms.h"
#include "test_program.h"

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

TEST(QuestExplore, SearchFindsExactlyTheStatesBuiltIn) {
  std::string before = testing::FileBytes(kQuest);
  // Nine states: the yard, the door (always with the key), the cellar door,
  // the fight, the treasure at 11 and at 0, home at 1 and at 0, the wall.
  EXPECT_EQ(Explore({kQuest, "--fights", "0"}), "States: 9\n" + kCoverage + "Battle at page 6: met in 1 states\n");
  // The rat (5 hp, attack 1) against the character a new game rolls: one
  // way of arriving, fought a thousand times.
  std::string balanced = Explore({kQuest});
  EXPECT_TRUE(std::regex_search(balanced, std::regex("Battle at page 6 \\(Rat\\): met in 1 states\n  arriving with ([0-9]+) of "
                                                     "\\1 hp, attack [0-9]+: win [0-9.]+%, loss [0-9.]+%; .* "
                                                     "\\(1000 fights\\); escaping once a blow could kill: win "
                                                     "[0-9.]+%, loss [0-9.]+%, escape [0-9.]+%\n$")))
      << balanced;
  EXPECT_EQ(testing::FileBytes(kQuest), before);  // played on a copy
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

// The explorer plays a copy in a folder of the temporary folder, which goes
// whatever ends the run: its end, an interrupt, a request to end.
TEST(QuestExplore, LeavesNothingInTheTemporaryFolder) {
  testing::TempDir dir;
  std::filesystem::path tmp = dir.path / "tmp", quest = dir.path / "loop.fbw";
  std::filesystem::create_directories(tmp);
  // A score that grows round a loop: a new state at every step, as long as the bound allows.
  std::ofstream(quest, std::ios::binary)
      << "[1]\r\nOption One=Round\r\nOption One Score=1\r\nOption One Destination Page=1\r\n";
  for (int signal : {0, SIGINT, SIGTERM}) {
    SCOPED_TRACE(signal);
    pid_t pid = ::fork();
    if (pid == 0) {
      ::setenv("TMPDIR", tmp.c_str(), 1);
      std::signal(SIGINT, SIG_DFL);  // as a terminal starts it, whatever started the tests
      std::signal(SIGTERM, SIG_DFL);
      int null = ::open("/dev/null", O_WRONLY);
      ::dup2(null, 1);
      ::dup2(null, 2);
      ::execl(FABLEWRIGHT_BIN, "fablewright", "explore", quest.c_str(), "--max-states", signal ? "999999999" : "50",
              "--fights", "0", static_cast<char*>(nullptr));
      ::_exit(127);
    }
    ASSERT_GT(pid, 0);
    if (signal) {
      for (int wait = 0; wait < 6000 && std::filesystem::is_empty(tmp); ++wait)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
      EXPECT_FALSE(std::filesystem::is_empty(tmp)) << "no scratch folder appeared";
      ::kill(pid, signal);
    }
    int status = 0;
    ::waitpid(pid, &status, 0);
    bool ended = signal ? WIFSIGNALED(status) && WTERMSIG(status) == signal : WIFEXITED(status) && WEXITSTATUS(status) == 0;
    EXPECT_TRUE(ended) << status;
    EXPECT_TRUE(std::filesystem::is_empty(tmp));
  }
}

// A file that is no quest has no page 1 for a game to start at: the explorer
// says so and plays nothing.
TEST(QuestExplore, AFileWithoutPagesIsRefused) {
  testing::TempDir dir;
  std::string noise;
  for (int i = 0; i < 4096; ++i) noise += static_cast<char>((i * 7919 + i / 13) % 256);
  const std::string files[] = {"", noise, "[\x01\xFE]\r\nPage Text=Here\r\n[Story Info]\r\nTitle=T\r\n"};
  for (const std::string& bytes : files) {
    std::string quest = dir.str() + "/odd.fbw";
    std::ofstream(quest, std::ios::binary) << bytes;
    std::ostringstream out, err;
    EXPECT_EQ(RunExploreCommand({quest}, out, err), 1);
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(err.str(), "fablewright: " + quest +
                             " holds no pages: every game starts at page 1, which it does not have\n");
  }
}

}  // namespace
}  // namespace fw

namespace fw {
namespace {

// One blow ends this duel: a player's blow that lands kills the gnat (1 hp),
// and the gnat's kills the player (1 hp). A round is a win when the player
// hits (69 of 74 hit draws), a loss when the player misses and the gnat hits,
// and is played again when both miss; so a win has the odds
// (69/74) / (1 - (5/74)^2) = 5106/5451, and a fight lasts 5476/5451 rounds.
// The sanitized suite fights fewer times, within a wider margin.
TEST(BattleBalance, DuelOddsAsEnumeratedByHand) {
  const int fights = testing::SmallCases() ? 500 : 20000;
  const double spread = std::sqrt(20000.0 / fights);  // the margins grow as the fights get fewer
  testing::TempDir dir;
  std::string quest = dir.str() + "/duel.fbw";
  std::filesystem::copy_file(std::string(FABLEWRIGHT_SOURCE_DIR) + "/tests/fixtures/explore/duel.fbw", quest);
  HeadlessPlatform platform;
  Program p(platform.services(), AppInfo{dir.str(), "fablewright", dir.str(), dir.str()}, AllForms());
  GameState(p).questfil.SetCaption(quest);
  FightOdds odds = FightOften(p, "1", 1, 1, fights);
  EXPECT_EQ(odds.fights, fights);
  EXPECT_EQ(odds.wins + odds.losses, fights);
  EXPECT_NEAR(static_cast<double>(odds.wins) / odds.fights, 5106.0 / 5451, 0.006 * spread);  // 3.5 standard deviations
  EXPECT_NEAR(odds.meanRounds, 5476.0 / 5451, 0.004 * spread);
  EXPECT_EQ(odds.meanHpLeft, 1);  // the gnat never strikes in a round it loses
  EXPECT_EQ(odds.monster, "Gnat");
  EXPECT_TRUE(odds.escapeOpen);
  // The cautious player, at 1 hp against blows of 2 to 9, never stays.
  EXPECT_EQ(odds.cautiousEscapes, fights);
}

}  // namespace
}  // namespace fw

namespace fw {
namespace {

// A way to a page the quest does not have ends the game there: the explorer
// shows it as a dead end, with the way to it. A gate that only the key opens,
// beside a wall that leads back to the gate, traps the player who walked on
// without the key: the explorer shows the trap with the way into it.
TEST(QuestExplore, DeadEndsAndTrapsWithTheirWays) {
  testing::TempDir dir;
  const struct {
    std::string quest;
    const char* report;
  } cases[] = {
      {"[Quest Data]\nNumber Of Pages=1\n[1]\nOption One=Jump\nOption One Score=+2\nOption One Destination Page=44\n",
       "States: 2\nPages reached (1): 1\nPages never reached (0): none\n"
       "Dead end at page 44: score 2\n  shortest way:\n    option 1 \"Jump\"\n"},
      {"[Quest Data]\nNumber Of Pages=3\n[1]\nOption One=Take the key\nOption One Destination Page=2\nKey Item1=Key\n"
       "Add1=1\nOption Two=Walk on\nOption Two Destination Page=2\n[2]\nOption One=Open the gate\n"
       "Option One Destination Page=3\nKey Item1=Key\nRequired1=1\nOption Two=Climb the wall\n"
       "Option Two Score=0\nOption Two Destination Page=2\n[3]\nLocation=Beyond\n",
       "States: 4\nPages reached (3): 1, 2, 3\nPages never reached (0): none\n"
       "Ending at page 3: score 0\n  shortest way:\n    option 1 \"Take the key\"\n    option 1 \"Open the gate\"\n"
       "Trap: 1 state from which no ending can be reached, going round pages 2\n"
       "  shortest way in:\n    option 2 \"Walk on\"\n"},
      // Each climb costs a point: the walk without the key never repeats a
      // state, so the search stops at its bound and cannot tell a trap.
      {"[Quest Data]\nNumber Of Pages=3\n[1]\nOption One=Take the key\nOption One Destination Page=2\nKey Item1=Key\n"
       "Add1=1\nOption Two=Walk on\nOption Two Destination Page=2\n[2]\nOption One=Open the gate\n"
       "Option One Destination Page=3\nKey Item1=Key\nRequired1=1\nOption Two=Climb the wall\n"
       "Option Two Score=-1\nOption Two Destination Page=2\n[3]\nLocation=Beyond\n", nullptr},
  };
  for (const auto& c : cases) {
    std::string quest = dir.str() + "/q.fbw";
    std::ofstream(quest) << c.quest;
    std::string report = Explore({quest, "--fights", "0", "--max-states", "40"});
    if (c.report) {
      EXPECT_EQ(report, c.report);
      continue;
    }
    EXPECT_NE(report.find("bound reached"), std::string::npos) << report;
    EXPECT_NE(report.find("Trap: 1 state from which no ending can be reached, going round pages 2\n"
                          "  shortest way in:\n    option 2 \"Walk on\"\n"),
              std::string::npos)
        << report;
  }
}

}  // namespace
}  // namespace fw
