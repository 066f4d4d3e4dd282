// The script language: words, targets, expectations and exit codes.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "app/assembly.h"
#include "bindings/headless/headless_services.h"
#include "bindings/headless/script_parse.h"
#include "bindings/headless/script_runner.h"
#include "test_program.h"

namespace fw {
namespace {

// Runs a script on a program whose folders are dir, as the command line makes it.
int RunIn(const std::string& dir, const std::string& script, std::ostream& out, std::ostream& err) {
  Launch launch;
  launch.appDir = launch.home = dir;
  launch.exeName = "fablewright";
  Assembly assembly(launch);
  return RunScript(script, {}, assembly.Maker(), out, err);
}

struct ScriptResult {
  int code;
  std::string out, err;
};

ScriptResult RunText(const std::string& script) {
  testing::TempDir dir;
  std::string path = dir.str() + "/t.txt";
  std::ofstream(path) << script;
  std::ostringstream out, err;
  int code = RunIn(dir.str(), path, out, err);
  return {code, out.str(), err.str()};
}

TEST(ScriptWords, QuotesEscapesAndEnvironment) {
  EXPECT_EQ(SplitWords(R"(expect  X ==  "a b\"c\\d\r\n\t")"),
            (std::vector<std::string>{"expect", "X", "==", "a b\"c\\d\r\n\t"}));
  EXPECT_EQ(SplitWords(R"(type A "")"), (std::vector<std::string>{"type", "A", ""}));
  EXPECT_THROW(SplitWords(R"(type A "open)"), ScriptError);
  EXPECT_THROW(SplitWords(R"(type A "\q")"), ScriptError);
  ::setenv("FW_SCRIPT_TEST", "here", 1);
  EXPECT_EQ(SubstituteEnvironment("a ${FW_SCRIPT_TEST}/b ${FW_UNSET_NAME}."), "a here/b .");
}

TEST(ScriptWords, Targets) {
  auto t = ParseTarget("FrmGame.List1.List(3)");
  ASSERT_TRUE(t);
  EXPECT_EQ(t->control, "List1");
  EXPECT_EQ(t->property, "List");
  EXPECT_EQ(t->index, 3);
  t = ParseTarget("FrmGame.Caption");
  ASSERT_TRUE(t);
  EXPECT_EQ(t->control, "");
  EXPECT_FALSE(ParseTarget("FrmGame"));
  EXPECT_FALSE(ParseTarget("FrmGame.a.b.c"));
  EXPECT_FALSE(ParseTarget("FrmGame.List1.List(x)"));
}

TEST(ScriptRun, AFailingExpectFailsTheRunAndSaysWhere) {
  ScriptResult r = RunText(
      "# a comment\n"
      "\n"
      "expect FrmGame.Caption == \"Fablewright 2004 - Beta 5.9\"\n"
      "expect FrmGame.questfil.Caption == \"something else\"\n"
      "expect FrmGame.Text1.Text == \"No Quest Loaded.\\r\\n\"\n");
  EXPECT_EQ(r.code, 1);
  EXPECT_NE(r.out.find("FAIL line 4: FrmGame.questfil.Caption == \"something else\"; actual \"No Quest Loaded.\""),
            std::string::npos)
      << r.out;
  EXPECT_NE(r.out.find("2 passed, 1 failed"), std::string::npos) << r.out;
}

TEST(ScriptRun, PassingRunExitsZeroAndPrintsValues) {
  ScriptResult r = RunText(
      "hover FrmGame.Image8\n"
      "expect FrmGame.Option2.Value == \"False\"\n"
      "expect FrmGame.HPPlay.Max == \"100\"\n"
      "expect FrmGame.List1.List(0) == \"\"\n"
      "expect FrmGame.Text1.Text startswith \"No Quest\"\n"
      "expect FrmGame.Text1.Text endswith \"\\r\\n\"\n"
      "expect FrmGame.Text1.Text contains \"Quest\"\n"
      "expect FrmGame.Timer1.Interval != \"5\"\n"
      "wait 1.5\n"
      "print FrmGame.score.Caption\n"
      "expect nomsgbox\n");
  EXPECT_EQ(r.code, 0) << r.out << r.err;
  EXPECT_NE(r.out.find("0\n8 passed, 0 failed"), std::string::npos) << r.out;
}

TEST(ScriptRun, ScriptMistakesStopWithCodeTwoAndTheLine) {
  struct Case {
    const char* script;
    const char* says;
  };
  for (Case c : {Case{"expect FrmNope.Caption == \"\"\n", "unknown form FrmNope"},
                 Case{"\nexpect FrmGame.Nope.Caption == \"\"\n", "line 2: unknown control"},
                 Case{"expect FrmGame.Text1.Colour == \"\"\n", "unknown property"},
                 Case{"expect FrmGame.Text1.Caption == \"\"\n", "TextBox has no property Caption"},
                 Case{"expect FrmGame.Text1.Text ~= \"\"\n", "unknown comparison"},
                 Case{"click FrmGame.Command2\n", "not on screen"},
                 Case{"click FrmGame.mnunewgame\n", "disabled"},
                 Case{"click FrmGame.Picture1\n", "covered by Picture2"},
                 Case{"click FrmGame.Option1\n", "does not take that action"},
                 Case{"rnd 1.5\n", "[0, 1)"},
                 Case{"answer msgbox 1e300\n", "needs a whole number"},
                 Case{"choose FrmGame.List1 1e300\n", "has no entry 1e300"},
                 Case{"start\nstart\n", "already started"},
                 Case{"fly away\n", "unknown command"}}) {
    ScriptResult r = RunText(c.script);
    EXPECT_EQ(r.code, 2) << c.script;
    EXPECT_NE(r.err.find(c.says), std::string::npos) << c.script << " said " << r.err;
  }
}

TEST(ScriptRun, LineEndsAndAByteOrderMarkReadAsTheText) {
  const char* body = "expect FrmGame.Caption startswith \"Fablewright\"";
  for (std::string script : {"\xEF\xBB\xBF" + std::string(body) + "\n" + body + "\n",
                             std::string(body) + "\r\n" + body + "\r\n",
                             std::string(body) + "\r" + body + "\r",
                             std::string(body) + "\n\r\n" + body}) {
    ScriptResult r = RunText(script);
    EXPECT_EQ(r.code, 0) << r.out << r.err;
    EXPECT_NE(r.out.find("2 passed, 0 failed"), std::string::npos) << r.out << r.err;
  }
  // A mistake on a CR-ended line is told by its own line number.
  ScriptResult r = RunText(std::string(body) + "\r\rfly away\r");
  EXPECT_EQ(r.code, 2);
  EXPECT_NE(r.err.find("line 3: unknown command"), std::string::npos) << r.err;
}

// A folder, a missing file or an unreadable one is no script (the bad-input
// catalogue runs them); nor is a FIFO with no writer, which would block a
// plain open for ever.
TEST(ScriptRun, AFifoIsNoScriptAndNeverBlocks) {
  testing::TempDir dir;
  std::ostringstream out, err;
  std::string fifo = dir.str() + "/pipe.txt";
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  EXPECT_EQ(RunIn(dir.str(), fifo, out, err), 2);
  EXPECT_NE(err.str().find("cannot read script"), std::string::npos) << err.str();
}

TEST(ScriptRun, ExitOrClosingTheLastWindowEndsTheProgram) {
  for (const char* leave : {"click FrmGame.mnuexit\n", "close FrmGame\n"}) {
    ScriptResult r = RunText(std::string(leave) + "expect ended\n");
    EXPECT_EQ(r.code, 0) << leave << r.out << r.err;
    r = RunText(std::string(leave) + "click FrmGame.Image1\n");
    EXPECT_EQ(r.code, 2) << leave;
    EXPECT_NE(r.err.find("the program has ended"), std::string::npos) << r.err;
  }
}

TEST(ScriptRun, FilesAndProfilesAreCheckedFromTheScriptsFolder) {
  testing::TempDir dir;
  std::ofstream(dir.str() + "/q.fbw") << "[Story Info]\r\nTitle=The Old Mill\r\n";
  std::string script = dir.str() + "/s.txt";
  std::ofstream(script) << "expect file q.fbw exists\n"
                           "expect file nothing.fbw absent\n"
                           "expect ini " << dir.str() << "/q.fbw \"Story Info\" title == \"The Old Mill\"\n"
                           "expect ini tmpquest.ini x y == \"\"\n";
  std::ostringstream out, err;
  EXPECT_EQ(RunIn(dir.str(), script, out, err), 0) << out.str() << err.str();
  EXPECT_NE(out.str().find("4 passed, 0 failed"), std::string::npos);
}

}  // namespace
}  // namespace fw
