// The terminal player through a plain pipe, as a screen reader or a script
// would drive it.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "bindings/terminal/terminal_player.h"
#include "shell/forms.h"
#include "shell/small_forms.h"
#include "store/profile.h"
#include "test_media.h"
#include "test_program.h"

namespace fw {
namespace {

// Runs the player with the given input; gives everything it printed.
std::string Play(const std::string& quest, const std::string& input, const std::string& home,
                 const std::string& options = "", const std::string& shellSetup = "") {
  std::string command = shellSetup + "printf '" + input + "' | " + FABLEWRIGHT_BIN + " play --silent " + options +
                        (quest.empty() ? std::string() : " '" + quest + "'") + " --home '" + home + "' 2>/dev/null";
  std::FILE* pipe = ::popen(command.c_str(), "r");
  std::string out;
  char buf[4096];
  while (std::size_t n = std::fread(buf, 1, sizeof buf, pipe)) out.append(buf, n);
  EXPECT_EQ(::pclose(pipe), 0);
  return out;
}

// Writes a quest file of the text into dir; gives its path.
std::string WriteQuest(const testing::TempDir& dir, const char* name, const std::string& text) {
  std::string path = dir.str() + "/" + name;
  std::ofstream(path, std::ios::binary) << text;
  return path;
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
  // What program this is, then the quest's banner.
  EXPECT_TRUE(out.starts_with(std::string(kSplashText) + "\nThe Old Mill\n-----")) << out;
  EXPECT_NE(out.find("by the caf\xC3\xA9."), std::string::npos) << out;
  EXPECT_NE(out.find("  1. Take the key and go on\n  2. Go on\n"), std::string::npos) << out;
  EXPECT_NE(out.find("There is no option 7 here."), std::string::npos) << out;
  EXPECT_NE(out.find(">\nThe door is locked.\nScore: 5\n  1. Unlock the door\n> "), std::string::npos) << out;
  EXPECT_NE(out.find("\nThe End \xE2\x80\x94 Game > Restart Quest to play again\n(Type restart, open, quit or help.)\n"),
            std::string::npos)
      << out;
  // Message boxes become prompts, a file dialog a path prompt.
  EXPECT_NE(out.find("\nWARNING!!!! Are you sure? This will end the current game without saving!\nYes or no (y/n)? "
                     "Yes or no (y/n)? "),
            std::string::npos)
      << out;
  EXPECT_NE(out.find("Open file (*.fbw), empty to cancel: "), std::string::npos) << out;
  EXPECT_EQ(out.find('\x1b'), std::string::npos) << "control codes in a pipe";
}

// Each expected piece of output, in this order.
void ExpectInOrder(const std::string& out, std::initializer_list<std::string> pieces) {
  std::size_t at = 0;
  for (const std::string& piece : pieces) {
    std::size_t found = out.find(piece, at);
    ASSERT_NE(found, std::string::npos) << "missing, or out of order: " << piece << "\n" << out;
    at = found + piece.size();
  }
}

TEST(TerminalPlayer, CharacterBattleItemsAndASavedGame) {
  testing::TempDir dir;
  std::string quest = dir.str() + "/bat.fbw";
  std::ofstream(quest, std::ios::binary)
      << "[Story Info]\r\nTitle=Bat Cave\r\n[CharacterData]\r\nCharCreateAllow=1\r\nCharName=Hero\r\n"
         "[1]\r\nLocation=Cave mouth\r\nPage Text=Wings flutter inside.\r\n"
         "Option One=Go in\r\nOption One Destination Page=2\r\n"
         "[2]\r\nLocation=Cave\r\nPage Text=A bat swoops.\r\nBattle=1\r\nBattleMonName=Bat\r\nBattleMonHp=1\r\n"
         "BattleMonAtk=0\r\nBattleMonExp=100\r\nBattleMonKeyItem=Bat wing\r\nBattleWin=3\r\n"
         "[3]\r\nLocation=Deep cave\r\nPage Text=It is quiet now.\r\nOption One=Leave\r\nOption One Destination Page=1\r\n";
  std::string sav = dir.str() + "/bat.sav";
  // With the seed fixed the fight is the same every run; a monster of one hit
  // point that cannot hurt falls to the first blow that lands. The character
  // panel keeps the page's option and the fight out of reach until it closes.
  std::string out = Play(quest,
                         "1\nattack\nname Ana\ncreate\n1\nattack\nattack\nattack\nclose\nitems\ncharacter\n"
                         "save\n" + sav + "\nload\n" + sav + "\nitems\nq\ny\n",
                         dir.str(), "--seed 7");
  ExpectInOrder(out, {"Name: Hero  Level: 1",
                      "(Character panel: name NAME, reroll, create, save character, load character.)",
                      // Its prompt starts a paragraph of its own, whether or not
                      // its fields are printed again above it.
                      "> That is not possible here.\n\n(Character panel:",
                      "> That is not possible here.\n\n(Character panel:", "Name: Ana  Level: 1", "  1. Go in",
                      "You are under attack from Bat!\nBat's HP: 1   Your Hp: ",
                      "(A battle! Type attack or escape.)", "\nYou have gained a level!\n", "You have won the battle!",
                      ">\nDeep cave\n>\nIt is quiet now.\nName: Ana  Level: 2",
                      "(Character panel: name NAME, save character, close.)", "  1. Leave", "  Bat wing\n",
                      "Name: Ana  Level: 2", "Exp: 0 of 100", "Saved Successfully.", "Loaded Successfully.",
                      "  Bat wing\n  Bat wing\n"});
  EXPECT_NE(out.find("HP: "), std::string::npos) << out;
  EXPECT_GT(out.find("A bat swoops."), out.find("Name: Ana")) << out;
  EXPECT_EQ(QuestStore(dir.str()).ReadINI(sav, "List Data", "0"), "Bat wing");
}

constexpr const char* kBatCave =
    "[Story Info]\r\nTitle=Bat Cave\r\n[CharacterData]\r\nCharCreateAllow=1\r\nCharName=Hero\r\n"
    "[1]\r\nLocation=Cave mouth\r\nPage Text=Wings flutter inside.\r\n"
    "Option One=Go in\r\nOption One Destination Page=2\r\n"
    "[2]\r\nLocation=Cave\r\nPage Text=A bat swoops.\r\nBattle=1\r\nBattleMonName=Bat\r\nBattleMonHp=1\r\n"
    "BattleMonAtk=0\r\nBattleMonExp=100\r\nBattleWin=3\r\n"
    "[3]\r\nLocation=Deep cave\r\nPage Text=It is quiet now.\r\n";

TEST(TerminalPlayer, ACharacterTheQuestFileCannotTakeIsToldOnceAndTheFileStaysWhole) {
  testing::TempDir dir;
  std::string quest = dir.str() + "/bat.fbw";
  // Larger than the size limit below, so no new copy of it can be written.
  std::string text = std::string(kBatCave) + "[Notes]\r\n" + std::string(12000, 'x') + "\r\n";
  std::ofstream(quest, std::ios::binary) << text;
  std::string out = Play(quest, "name Ana\ncreate\n1\nattack\nattack\nattack\nq\ny\n", dir.str(), "--seed 7",
                         "trap '' XFSZ; ulimit -f 8; ");
  ExpectInOrder(out, {"Name: Ana", "(The character could not be written to the quest file", "You have won the battle!"});
  std::size_t first = out.find("could not be written");
  EXPECT_EQ(out.find("could not be written", first + 1), std::string::npos) << out;
  std::string after = testing::FileBytes(quest);
  EXPECT_TRUE(after == text) << "the quest file changed: " << after.size() << " bytes, was " << text.size();
}

constexpr const char* kMill =
    "[Story Info]\r\nTitle=The Old Mill\r\n"
    "[1]\r\nLocation=The gate\r\nPage Text=A rusty key lies in the grass.\r\n"
    "Option One=Go on\r\nOption One Score=+5\r\nOption One Destination Page=2\r\n"
    "Option Two=Go home\r\nOption Two Score=-2\r\nOption Two Destination Page=3\r\n"
    "[2]\r\nLocation=The door\r\nPage Text=The door is locked.\r\n"
    "Option One=Back\r\nOption One Destination Page=1\r\n"
    "[3]\r\nLocation=Home\r\nPage Text=You are home.\r\n";

TEST(TerminalPlayer, CommandsAreTakenWhateverTheirCaseAndBlanksAndLookGivesThePlace) {
  testing::TempDir dir;
  std::string quest = WriteQuest(dir, "mill.fbw", kMill);
  std::string out = Play(quest, "ITEMS\n Look \nScore\n1 \nLOOK\n  1\t\n2\nhelp\nscore\nq\n", dir.str());
  ExpectInOrder(out, {"> You carry no key items.\n", "> \nThe gate\nA rusty key lies in the grass.\n",
                      "> Score: 0\n", ">\nThe door is locked.\nScore: 5\n  1. Back\n",
                      "> \nThe door\nThe door is locked.\n", ">\nA rusty key lies in the grass.\n  1. Go on",
                      // Back on page 1 the score did not change: it is not repeated.
                      ">\nYou are home.\nScore: 3\nThe End",
                      // At an ending it is told once, and on asking.
                      "> Type the number of an option", "\nThe End", "> Score: 3\n"});
  EXPECT_EQ(out.find("Score: 5\n  1. Go on"), std::string::npos) << out;
  EXPECT_EQ(out.find("Score: 3\nThe End", out.find("Score: 3\nThe End") + 1), std::string::npos) << out;
}

// A bare name is saved where the dialog opens: the program's own folder
// where the player may write there, else the per-user saves folder; the
// transcript says where. A name to load is found without its extension.
TEST(TerminalPlayer, ABareNameGoesWhereTheDialogOpensAndIsLoadedWithoutItsExtension) {
  testing::TempDir dir;
  std::string quest = WriteQuest(dir, "mill.fbw", kMill);
  struct Case {
    std::string appDir, folder;
  };
  for (const Case& c : {Case{dir.str(), dir.str()}, Case{"/usr/bin", dir.str() + "/saves"}}) {
    SCOPED_TRACE(c.appDir);
    std::string out = Play(quest, "1\nsave\nfirst\n1\nload\nfirst \nq\ny\n", dir.str(), "--app-dir " + c.appDir);
    std::string game = c.folder + "/first.sav";
    ExpectInOrder(out, {"Game: " + game + "\nSaved Successfully.", "Game: " + game + "\nLoaded Successfully.",
                        ">\nThe door is locked.\n"});
    EXPECT_TRUE(std::filesystem::is_regular_file(game));
  }
}

TEST(TerminalPlayer, TheCharacterBeforeItIsMadeAndItsFilesAreTold) {
  testing::TempDir dir;
  std::string quest = WriteQuest(dir, "bat.fbw", kBatCave);
  std::string cha = dir.str() + "/ana";
  std::string out = Play(quest,
                         "character\nname \xE6\x97\xA5\xE6\x9C\xAC\nname Zo\xC3\xAB \xE6\x97\xA5\nname Zo\xC3\xAB\n"
                         "load character\n\ncreate\ncharacter\nload character\nsave character\n" + cha + "\nq\ny\n",
                         dir.str());
  // Covered by the panel, the gauges are not read out before the character is made.
  std::string before = out.substr(0, out.find("Name: Zo\xC3\xAB  Level: 1\nHit Points"));
  EXPECT_EQ(before.find("HP: "), std::string::npos) << out;
  // A name the game's code page cannot hold is told of once.
  ExpectInOrder(out, {"it became \"??\".)\n", "Name: ??", "Name: Zo\xC3\xAB ?", "Name: Zo\xC3\xAB  Level: 1\n",
                      "Open file (*.cha), empty to cancel: ", "HP: ",
                      "Load character is no longer offered: a character is loaded only until one is created in this run.",
                      "Character saved in " + cha + ".cha.\n"});
  EXPECT_EQ(out.find("it became", out.find("it became") + 1), std::string::npos) << out;
  EXPECT_EQ(QuestStore(dir.str()).ReadINI(cha + ".cha", "CharacterData", "CharLevel").empty(), false);
}

// The fight of a run, from its first line to its end.
std::string Fight(const std::string& out) {
  std::size_t start = out.find("You are under attack");
  return start == std::string::npos ? "" : out.substr(start, out.find("Deep cave", start) - start);
}

// Every round ends on both sides' hit points; and without a display the
// window's job plays in the terminal on the same dice as play.
TEST(TerminalPlayer, BothSidesOfAFightAreShownAfterEveryRoundAndTheProgramsOwnJobTakesTheSeed) {
  testing::TempDir dir;
  std::string text = kBatCave;
  text.replace(text.find("BattleMonHp=1"), 13, "BattleMonHp=30");
  std::string quest = WriteQuest(dir, "bat.fbw", text);
  WriteQuest(dir, "own.fbw", text);  // the first run writes its character into its quest
  std::string fight = "create\n1\nattack\nattack\nattack\nattack\nattack\nattack\nattack\nq\ny\n";
  std::string out = Play(quest, fight, dir.str(), "--seed 7");
  ExpectInOrder(out, {"You are under attack from Bat!\nBat's HP: 30   Your Hp: ", "(A battle!", "> \nYou",
                      "\nBat's HP: ", "(A battle!", "You have won the battle!\nBat's HP: -", ">\nDeep cave"});
  std::size_t rounds = 0, standings = 0;
  for (std::size_t at = 0; (at = out.find("> \nYou", at)) != std::string::npos; ++at) ++rounds;
  for (std::size_t at = 0; (at = out.find("\nBat's HP: ", at)) != std::string::npos; ++at) ++standings;
  EXPECT_EQ(standings, rounds + 1) << out;

  std::string command = "cd '" + dir.str() + "' && printf 'open\nown.fbw\n" + fight +
                        "' | env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM " + FABLEWRIGHT_BIN +
                        " --seed 7 --home . --app-dir . 2>/dev/null";
  std::FILE* pipe = ::popen(command.c_str(), "r");
  std::string own;
  char buf[4096];
  while (std::size_t n = std::fread(buf, 1, sizeof buf, pipe)) own.append(buf, n);
  EXPECT_EQ(::pclose(pipe), 0);
  EXPECT_EQ(Fight(own), Fight(out)) << own;
}

// An option typed while the movie covers the page waits for its end; the
// terminal says once that a movie plays, and for how long.
TEST(TerminalPlayer, AnOptionTypedDuringAMovieRunsWhenTheMovieEnds) {
  testing::TempDir dir;
  // Half a second: five frames of 100 ms.
  std::ofstream(dir.str() + "/gate.avi", std::ios::binary)
      << "RIFF" + testing::Le(4 + 8 + 56, 4) + "AVI avih" + testing::Le(56, 4) + testing::Le(100000, 4) +
             std::string(12, '\0') + testing::Le(5, 4) + std::string(36, '\0');
  std::string quest = WriteQuest(dir, "gate.fbw",
                                 "[1]\r\nPage Text=The gate opens.\r\nMovie=gate.avi\r\n"
                                 "Option One=Go through\r\nOption One Destination Page=2\r\n"
                                 "[2]\r\nPage Text=Inside.\r\nOption One=Back\r\n");
  std::string out = Play(quest, "1\\n\\nq\\ny\\n", dir.str());
  ExpectInOrder(out, {"  1. Go through\n(a movie plays: ", " s)\n> ", ">\nInside.\n  1. Back\n> \n  1. Back\n> "});
  EXPECT_EQ(out.find("a movie plays", out.find("a movie plays") + 1), std::string::npos) << out;
  EXPECT_EQ(out.find("That is not possible here."), std::string::npos) << out;
}

// Without a splash to show, the terminal says what program this is and goes
// straight on: not a moment of the splash's pause passes.
TEST(TerminalPlayer, PassesTheSplashAtOnce) {
  testing::TempDir dir;
  HeadlessPlatform platform;
  // The terminal's own pump, each call a millisecond of virtual time as a
  // script's would take, so a pause kept would show on the clock.
  struct Ticking : EventPump {
    EventPump* terminal = nullptr;
    VirtualClock* clock = nullptr;
    void Pump(Program& p) override {
      terminal->Pump(p);
      clock->Set(clock->Now() + 0.001);
    }
  } ticking;
  ticking.clock = &platform.clock;
  ProgramMaker make = [&](Services own) {
    Services services = platform.services();
    ticking.terminal = own.pump;
    services.pump = &ticking;
    services.dialogs = own.dialogs;
    services.players = own.players;
    return std::make_unique<Program>(services, AppInfo{dir.str(), "fablewright", dir.str(), dir.str()}, AllForms());
  };
  int input[2];
  ASSERT_EQ(::pipe(input), 0);
  ASSERT_EQ(::write(input[1], "quit\n", 5), 5);
  ::close(input[1]);
  std::FILE* out = std::tmpfile();
  EXPECT_EQ(PlayInTerminal({}, make, input[0], out), 0);
  ::close(input[0]);
  EXPECT_LT(platform.clock.Now() - VirtualClock::kStart, 0.1);
  std::rewind(out);
  char first[200] = {};
  ASSERT_NE(std::fgets(first, sizeof first, out), nullptr);
  std::fclose(out);
  EXPECT_EQ(std::string(first), std::string(kSplashText) + "\n");
}

// The shell's boxes and windows that a terminal can show, and the exit
// question: No plays on, Yes ends the player.
TEST(TerminalPlayer, AboutWhatsNewAndTheExitQuestion) {
  testing::TempDir dir;
  std::string quest = WriteQuest(dir, "q.fbw", "[1]\r\nLocation=Hall\r\nPage Text=Quiet.\r\nOption One=Wait\r\n");
  std::string out = Play(quest, "about\\nnews\\nquit\\nn\\n1\\nquit\\ny\\nabout\\n", dir.str());
  ExpectInOrder(out, {"About: Fablewright 2004\nUsing Fablewright Game Engine Build V5.9\n",
                      "E-Mail: authors@fablewright.example\n", "What's New! in 5.9\nVersion 5.9\n4-27-04\n",
                      "a few errors that could cause Fablewright to\ncrash.\n",
                      "WARNING!!!! Are you sure? This will end the current game without saving!\nYes or no (y/n)? ",
                      "  1. Wait\n", "WARNING!!!! Are you sure?"});
  // The Yes ended the player: the last line of input was never read.
  EXPECT_EQ(out.find("About: ", out.find("About: ") + 1), std::string::npos) << out;
}

// The comforts in one game and the next run with the same home: status,
// undo, restart, the transcript into a file, the autosave and continue.
TEST(TerminalPlayer, ComfortsAndContinueInASecondRun) {
  testing::TempDir dir;
  std::string quest = WriteQuest(dir, "lane.fbw",
                                 "[Story Info]\r\nTitle=Lane\r\n"
                                 "[1]\r\nLocation=Gatehouse\r\nPage Text=A gate.\r\n"
                                 "Option One=In\r\nOption One Score=+40\r\nOption One Destination Page=2\r\n"
                                 "[2]\r\nLocation=Yard\r\nPage Text=A yard.\r\n"
                                 "Option One=Out\r\nOption One Score=+2\r\nOption One Destination Page=1\r\n");
  std::string out = Play(quest,
                         "undo\\n1\\nstatus\\nundo\\nstatus\\nrestart\\ny\\n1\\n1\\ntranscript story.txt\\nquit\\ny\\n",
                         dir.str(), "", "cd '" + dir.str() + "' && ");
  EXPECT_NE(out.find("There is nothing to undo.\n"), std::string::npos) << out;
  EXPECT_NE(out.find("Yard \xC2\xB7 40\n"), std::string::npos) << out;
  EXPECT_NE(out.find("\n>\n(Undone.)\n"), std::string::npos) << out;
  EXPECT_NE(out.find("Gatehouse \xC2\xB7 0\n"), std::string::npos) << out;
  std::string story = testing::FileBytes(dir.path / "story.txt");
  EXPECT_TRUE(story.starts_with("No Quest Loaded.\nLane\n")) << story;
  EXPECT_TRUE(story.ends_with(">\nA gate.\n")) << story;
  EXPECT_NE(story.find(">\n(Undone.)"), std::string::npos) << story;
  EXPECT_EQ(story.find('\r'), std::string::npos);

  // The next run goes on where the last page left the game.
  std::string next = Play("", "status\\nitems\\nquit\\ny\\n", dir.str(), "--continue");
  EXPECT_NE(next.find("Loaded Successfully."), std::string::npos) << next;
  EXPECT_NE(next.find("Gatehouse \xC2\xB7 42\n"), std::string::npos) << next;
  std::filesystem::path saves = dir.path / "saves";
  int autosaves = 0;
  for (const auto& entry : std::filesystem::directory_iterator(saves))
    autosaves += entry.path().filename().string().starts_with("lane (autosave ");
  EXPECT_EQ(autosaves, 1);
}

}  // namespace
}  // namespace fw

