// The author tools on quests with one known fault each: the checker finds
// that fault and nothing else, and the map draws every page once.
#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>

#include "app/author_tools.h"
#include "editor/quest_check.h"
#include "editor/quest_graph.h"
#include "editor/quest_map.h"
#include "play/page_rules.h"
#include "store/profile.h"
#include "store/profile_image.h"
#include "test_program.h"

namespace fw {
namespace {

const std::string kFixtures = std::string(FABLEWRIGHT_SOURCE_DIR) + "/tests/fixtures/check/";

struct ToolRun {
  int code;
  std::string out, err;
};

ToolRun Check(const std::string& quest, std::vector<std::string> extra = {}) {
  std::ostringstream out, err;
  std::vector<std::string> args{quest};
  args.insert(args.end(), extra.begin(), extra.end());
  int code = RunCheckCommand(args, out, err);
  return {code, out.str(), err.str()};
}

// The findings of a fixture, without the quest's path in front.
std::vector<std::string> FindingsOf(const std::string& name, int& code) {
  ToolRun run = Check(kFixtures + name + ".fbw");
  code = run.code;
  std::vector<std::string> lines;
  std::istringstream in(run.out);
  for (std::string line; std::getline(in, line);) {
    EXPECT_EQ(line.rfind(kFixtures + name + ".fbw:", 0), 0u) << line;
    lines.push_back(line.substr(kFixtures.size() + name.size() + 5));
  }
  return lines;
}

struct Expected {
  const char* fixture;
  int code;
  std::vector<std::string> findings;
};

TEST(QuestCheck, EachFixtureGivesItsOneFaultAndNothingElse) {
  const std::vector<Expected> cases = {
      {"clean", 0, {}},
      {"media-found", 0, {}},
      {"destination-missing", 1,
       {"2: error: option two \"Go down to the rat\" leads to page \"44\", which the quest does not have"}},
      {"destination-blank", 1, {"2: error: option two \"Go down to the rat\" has no destination page"}},
      {"battle-exit-missing", 1, {"4: error: the battle's BattleWin page \"12\" is not in the quest"}},
      {"unreachable", 0, {"6: warning: no option, battle outcome or start reaches this page"}},
      {"dead-end", 1,
       {"3: warning: dead end: none of its options can ever show, and there is no battle",
        "3: error: option one \"Wear the crown\" requires and adds the same item \"Crown\": it never shows"}},
      {"item-never-given", 1,
       {"2: error: option one \"Open the door\" requires the key item \"Crown\", which nothing in the quest gives"}},
      {"requires-and-adds", 1,
       {"2: error: option one \"Open the door\" requires and adds the same item \"Key\": it never shows"}},
      {"add-without-item", 1,
       {"1: error: option two \"Walk to the door\" has Add set and no key item: it never shows"}},
      {"score-not-number", 1,
       {"1: error: option one \"Take the key\" has the score \"lots\", which is no number: the score stays as it was"}},
      {"monster-hp-not-number", 1, {"4: error: the monster's hit points \"ten\" are no number"}},
      {"monster-hp-plus-sign", 0,
       {"4: warning: the monster's hit points \"+12\" count as already beaten, since the fight tests the text, which "
        "sorts before \"0\": a first round in which the player misses wins the fight; write 12 instead"}},
      {"monster-attack-not-number", 1,
       {"4: error: the monster's attack \"strong\" is no number: its blows deal only the dice's 2 to 9"}},
      {"battle-without-character", 1,
       {"4: error: a battle on a quest without a character (CharCreateAllow is not 1): the player fights with 0 "
        "hit points and loses the first round"}},
      {"media-missing", 1, {"3: error: Image names \"pics\\gold.bmp\", which cannot be found"}},
      {"beyond-page-count", 0,
       {"5: warning: the editor cannot reach this page: its list holds pages 1 to 4 (Number Of Pages)"}},
      {"undo-switch-unknown", 0,
       {"Story Info: warning: NoUndo \"yes\" is neither 1 nor 0: players may undo their steps"}},
      {"trap", 0, {"5: warning: trap: no page that ends the story can be reached from here, whatever items the player holds"}},
      {"line-break", 0,
       {"3: warning: the value of Page Text has a line break in the file: only the line before it is read, and "
        "\"The end.\" is lost"}},
  };
  for (const Expected& e : cases) {
    int code = -1;
    EXPECT_EQ(FindingsOf(e.fixture, code), e.findings) << e.fixture;
    EXPECT_EQ(code, e.code) << e.fixture;
  }
}

TEST(QuestCheck, JsonCarriesTheSameFindingsAndAMissingFileIsNoCheck) {
  ToolRun run = Check(kFixtures + "destination-missing.fbw", {"--format", "json"});
  EXPECT_EQ(run.code, 1);
  EXPECT_NE(run.out.find("\"page\": \"2\", \"level\": \"error\", \"message\": \"option two \\\"Go down to the rat\\\""),
            std::string::npos)
      << run.out;
  EXPECT_EQ(Check(kFixtures + "clean.fbw", {"--format", "json"}).out, "[]\n");
  ToolRun missing = Check(kFixtures + "no-such-quest.fbw");
  EXPECT_EQ(missing.code, 2);
  EXPECT_EQ(missing.err, "fablewright: cannot read the quest " + kFixtures + "no-such-quest.fbw\n");
}

// The demo ships without its media, which the build makes: everything else
// about it is sound.
TEST(QuestCheck, DemoQuestLacksOnlyItsBuiltMedia) {
  ToolRun run = Check(std::string(FABLEWRIGHT_SOURCE_DIR) + "/quests/demo/demo.fbw");
  std::istringstream in(run.out);
  int lines = 0;
  for (std::string line; std::getline(in, line); ++lines)
    EXPECT_TRUE(std::regex_search(line, std::regex(": error: (Image|Music|Mp3|Movie) names \"[a-z]+\\.[a-z]+\", which "
                                                   "cannot be found$")))
        << line;
  EXPECT_EQ(lines, 6);
}

// Findings on quests made in memory, for the cases a file per fault would
// only repeat.
std::vector<std::string> CheckText(const std::string& text) {
  testing::TestProgram t({});
  QuestGraph graph = BuildQuestGraph(MakeProfileImage(text));
  std::vector<std::string> out;
  for (const Finding& f : CheckQuestGraph(t.program, graph, t.dir.str()))
    out.push_back(f.page + ": " + (f.level == Finding::Level::Error ? "error: " : "warning: ") + f.message);
  return out;
}

const std::string kHead = "[Quest Data]\nNumber Of Pages=3\n[CharacterData]\nCharCreateAllow=1\n";
const std::string kFight = "[1]\nBattle=1\nBattleMonAtk=3\nBattleWin=2\nBattleLose=3\nBattleEscapecheck=0\n";
const std::string kEnds = "[2]\nPage Text=Won\n[3]\nPage Text=Lost\n";

TEST(QuestCheck, MonsterHitPointsAsTheFightReadsThem) {
  auto hp = [](const std::string& value) { return CheckText(kHead + kFight + "BattleMonHp=" + value + "\n" + kEnds); };
  EXPECT_EQ(hp("12"), std::vector<std::string>{});
  EXPECT_EQ(hp("0.5"), std::vector<std::string>{});  // sorts after "0": alive
  ASSERT_EQ(hp(".5").size(), 1u);
  EXPECT_NE(hp(".5")[0].find("\".5\" count as already beaten"), std::string::npos);
  EXPECT_EQ(hp("-3"), std::vector<std::string>{"1: warning: the monster's hit points \"-3\" are at or below zero: "
                                               "the first round wins the fight"});
  ASSERT_EQ(hp("").size(), 1u);
  EXPECT_NE(hp("")[0].find("no hit points"), std::string::npos);
}

TEST(QuestCheck, ReachAndPagesByTheGamesRules) {
  // A closed escape needs no page; a destination's letter case does not
  // matter, as section names do not.
  std::string quest = "[Quest Data]\nNumber Of Pages=2\n[1]\nOption One=Go\nOption One Destination Page=Two\n"
                      "[two]\nPage Text=End\n";
  EXPECT_EQ(CheckText(quest), std::vector<std::string>{
                                  "two: warning: the editor cannot reach this page: its list holds pages 1 to 2 "
                                  "(Number Of Pages)"});
  EXPECT_EQ(CheckText("[Quest Data]\nNumber Of Pages=1\n[2]\nPage Text=x\n"),
            (std::vector<std::string>{"1: error: the quest has no page 1, where every game starts",
                                      "2: warning: the editor cannot reach this page: its list holds pages 1 to 1 "
                                      "(Number Of Pages)",
                                      "2: warning: no option, battle outcome or start reaches this page"}));
  EXPECT_EQ(CheckText("[1]\nPage Text=x\n"),
            std::vector<std::string>{"Quest Data: error: Number Of Pages is missing: the editor cannot load the quest"});
}

// The gating table of the page show, row by row: Required, item held, Add.
TEST(PageRules, OptionShowsByTheGatingTable) {
  EXPECT_FALSE(OptionShows("Go", "1", false, ""));
  EXPECT_TRUE(OptionShows("Go", "1", true, "0"));
  EXPECT_TRUE(OptionShows("Go", "", false, ""));
  EXPECT_TRUE(OptionShows("Go", "0", false, "abc"));
  EXPECT_FALSE(OptionShows("Go", "1", true, "1"));
  EXPECT_FALSE(OptionShows("Go", "0", true, "01"));
  EXPECT_TRUE(OptionShows("Go", "", false, "1"));
  EXPECT_FALSE(OptionShows("", "0", true, ""));
  EXPECT_TRUE(GivesItem("Key", "1"));
  EXPECT_FALSE(GivesItem("Key", "01"));  // gating counts it as 1, the hand-out does not
  EXPECT_FALSE(GivesItem("", "1"));
}

// The image gives what a read of the file gives, key by key, on the
// grammar's awkward corners.
TEST(ProfileImage, ReadsAsTheKeyByKeyReader) {
  const std::string text =
      "\xEF\xBB\xBF; comment\r\n[ One ]\r\nA = 1 \r\na=2\r\n;B=3\r\nC='quoted'\rD=\"x\"\n[two]extra\nA=t\n"
      "  [One]\nA=again\nE=\n[three\nA=3\n[]\nA=none\nstray line\n[Four]\n F =  spaced value  \n";
  ProfileImage image(text);
  for (const char* section : {"One", "one", " One", "two", "TWO", "three", "Four", "", "missing", "two]extra"})
    for (const char* key : {"A", "a", "B", "C", "D", "E", "F", " F", "missing"})
      EXPECT_EQ(image.Value(section, key), FindProfileValue(text, section, key)) << section << "/" << key;
  ASSERT_EQ(image.Sections().size(), 6u);
  EXPECT_EQ(image.Sections()[4].strays.size(), 1u);
  EXPECT_EQ(image.Sections()[4].strays[0].afterKey, "A");
}

TEST(QuestMap, SvgHoldsOneNodePerPageAndMarksTheBrokenWay) {
  testing::TestProgram t({});
  std::ostringstream out, err;
  std::string svg = t.dir.str() + "/map.svg";
  ASSERT_EQ(RunMapCommand({kFixtures + "destination-missing.fbw", "-o", svg}, t.graphs, out, err), 0) << err.str();
  std::string text = testing::FileBytes(svg);
  for (int i = 0; i < 5; ++i) {
    std::string title = "<title>p" + std::to_string(i) + "</title>";
    std::size_t at = text.find(title);
    EXPECT_NE(at, std::string::npos) << title;
    EXPECT_EQ(text.find(title, at + 1), std::string::npos) << title;
  }
  EXPECT_EQ(text.find("<title>p5</title>"), std::string::npos);
  EXPECT_NE(text.find("no page 44"), std::string::npos);
  std::ptrdiff_t nodes = 0;
  for (std::size_t at = 0; (at = text.find("class=\"node\"", at)) != std::string::npos; ++at) ++nodes;
  EXPECT_EQ(nodes, 6);  // five pages and the missing one
  EXPECT_EQ(RunMapCommand({kFixtures + "clean.fbw", "-o", t.dir.str() + "/map.gif"}, t.graphs, out, err), 2);
}

}  // namespace
}  // namespace fw

namespace fw {
namespace {

// A game folder: its game.dat first, where a file named outside the folder
// is ignored by the game, then the quest it names, by its path there.
TEST(QuestCheck, AGameFolderWarnsOfFilesOutsideIt) {
  testing::TempDir dir;
  std::string folder = dir.str() + "/Crypt";
  std::filesystem::create_directories(folder);
  std::filesystem::copy_file(kFixtures + "destination-missing.fbw", folder + "/Crypt.fbw");
  auto write = [&](const std::string& quest) {
    std::ofstream(folder + "/game.dat", std::ios::binary)
        << "[Image]\r\nBackground=..\\hall.jpg\r\nMenuButton=go.gif\r\n[loaddat]\r\nQuestFile=" << quest
        << "\r\n[Game Data]\r\nTitle=Crypt\r\n";
  };
  std::string background = folder + "/game.dat:Image: warning: Background \"..\\hall.jpg\" is outside the game "
                           "folder: the game ignores it and keeps its own picture\n";
  write("../victim/v.fbw");
  ToolRun run = Check(folder);
  EXPECT_EQ(run.code, 0);
  EXPECT_EQ(run.out, background + folder + "/game.dat:loaddat: warning: QuestFile \"../victim/v.fbw\" is outside the "
                                           "game folder: the game ignores it and starts as the full system\n");
  write("Crypt.fbw");
  run = Check(folder);
  EXPECT_EQ(run.code, 1);
  EXPECT_EQ(run.out, background + folder + "/Crypt.fbw:2: error: option two \"Go down to the rat\" leads to page "
                                           "\"44\", which the quest does not have\n");
  EXPECT_EQ(Check(dir.str()).code, 2);  // no game.dat
}

// Every byte a line of the file can hold, in a location, an option and the
// name of the page it leads to: the map is drawn, and its SVG holds no
// control character, which XML forbids.
TEST(QuestMap, EveryByteOfWindows1252PassesIntoTheMap) {
  testing::TestProgram t({});
  std::string bytes;
  for (int c = 0; c < 256; ++c)
    if (c != '\r' && c != '\n') bytes += static_cast<char>(c);
  std::string quest = t.dir.str() + "/bytes.fbw";
  std::ofstream(quest, std::ios::binary) << "[1]\r\nLocation=" << bytes << "\r\nOption One=" << bytes
                                         << "\r\nOption One Destination Page=" << bytes << "\r\n";
  for (const char* format : {"svg", "dot"}) {
    SCOPED_TRACE(format);
    std::ostringstream out, err;
    std::string map = t.dir.str() + "/map." + format;
    GraphvizLayout graphs;
    ASSERT_EQ(RunMapCommand({quest, "-o", map}, graphs, out, err), 0) << err.str();
    std::string text = testing::FileBytes(map);
    EXPECT_EQ(std::count_if(text.begin(), text.end(), [](char c) { return c >= 0 && c < 0x20 && c != '\n' && c != '\t'; }),
              0);
  }
}

TEST(QuestCheck, FindingsLeaveInUtf8WithTheirQuotesEscaped) {
  std::vector<Finding> findings = {{"Caf\xE9", Finding::Level::Warning, "option one \"Entr\xE9\x65\"\ttab"}};
  EXPECT_EQ(FindingsText("q.fbw", findings), "q.fbw:Caf\xC3\xA9: warning: option one \"Entr\xC3\xA9\x65\"\ttab\n");
  EXPECT_EQ(FindingsJson("q.fbw", findings),
            "[\n {\"quest\": \"q.fbw\", \"page\": \"Caf\xC3\xA9\", \"level\": \"warning\", \"message\": \"option one "
            "\\\"Entr\xC3\xA9\x65\\\"\\u0009tab\"}\n]\n");
}

// A ring of pages, each with options on, a long way on, and back to page 1:
// the layered layout's worst case, where every arrow crosses many layers.
int MappedNodes(int pages, int options) {
  testing::TempDir dir;
  std::string quest = dir.str() + "/ring.fbw", svg = dir.str() + "/ring.svg";
  {
    std::ofstream out(quest);
    out << "[Quest Data]\nNumber Of Pages=" << pages << "\n";
    const char* names[] = {"One", "Two", "Three", "Four"};
    for (int p = 1; p <= pages; ++p) {
      int to[] = {p % pages + 1, (p * 7) % pages + 1, (p + 2) % pages + 1, 1};
      out << "[" << p << "]\nLocation=Room " << p << "\n";
      for (int o = 0; o < options; ++o)
        out << "Option " << names[o] << "=Go\nOption " << names[o] << " Destination Page=" << to[o] << "\n";
    }
  }
  std::ostringstream out, err;
  GraphvizLayout graphs;
  EXPECT_EQ(RunMapCommand({quest, "-o", svg}, graphs, out, err), 0) << err.str();
  EXPECT_EQ(out.str(), "Map of " + std::to_string(pages) + " pages written to " + svg + "\n");
  EXPECT_FALSE(std::filesystem::exists(svg + ".tmp-" + std::to_string(::getpid())));
  std::string text = testing::FileBytes(svg);
  int nodes = 0;
  for (std::size_t at = 0; (at = text.find("class=\"node\"", at)) != std::string::npos; ++at) ++nodes;
  return nodes;
}

// Past the curved layout's reach (a 100-page ring took it minutes) and past
// the layered one's, the map is still one node a page, in a second or two.
// The sanitized suite, where Graphviz runs many times slower, maps smaller
// rings with as many arrows a page, past the same two bounds.
TEST(QuestMap, DenselyLinkedAndLargeQuestsGetEveryPage) {
  const bool small = testing::SmallCases();
  EXPECT_EQ(MappedNodes(small ? 40 : 100, 4), small ? 40 : 100);  // 160 or 400 arrows: layered, straight
  EXPECT_EQ(MappedNodes(small ? 120 : 250, small ? 4 : 2), small ? 120 : 250);  // 480 or 500: scattered
}

}  // namespace
}  // namespace fw
