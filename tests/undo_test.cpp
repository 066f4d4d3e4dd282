// Undo as a property: random walks through a quest, then every step taken
// back, each time to the very state the step started from.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <regex>
#include <sys/stat.h>
#include <string>
#include <vector>

#include "forms/controls.h"
#include "forms/user_actions.h"
#include "media/midi_state.h"
#include "play/autosave.h"
#include "play/game_state.h"
#include "play/saved_game.h"
#include "play/start_quest.h"
#include "play/undo.h"
#include "shell/forms.h"
#include "test_media.h"
#include "test_program.h"

namespace fw {
namespace {

// The whole state a step may change, but the transcript, which only grows.
struct State {
  std::vector<Control> controls;
  MidiApiState midi;
  std::string quest;
};

State Take(Program& p, const std::filesystem::path& quest) {
  FormSurface& s = p.surface();
  State st{s.Form(s.FindForm("FrmGame")).controls, Midi(p), testing::FileBytes(quest)};
  return st;
}

// Every property a player or a binding sees; Undo's own menu item reflects
// the history and is left out.
void ExpectSame(const State& want, const State& got, int step) {
  for (std::size_t i = 0; i < want.controls.size(); ++i) {
    const Control& a = want.controls[i];
    const Control& b = got.controls[i];
    std::string name = a.decl->name;
    if (name == "Text1" || name == "mnuundo") continue;
    SCOPED_TRACE("step " + std::to_string(step) + ", " + name);
    EXPECT_EQ(a.caption, b.caption);
    EXPECT_EQ(a.visible, b.visible);
    EXPECT_EQ(a.enabled, b.enabled);
    EXPECT_TRUE(a.left == b.left && a.top == b.top && a.width == b.width && a.height == b.height);
    EXPECT_EQ(a.optionValue, b.optionValue);
    EXPECT_EQ(a.checkValue, b.checkValue);
    EXPECT_EQ(a.list, b.list);
    EXPECT_EQ(a.listIndex, b.listIndex);
    EXPECT_EQ(a.barValue, b.barValue);
    EXPECT_EQ(a.barMax, b.barMax);
    EXPECT_EQ(a.picture, b.picture);
    EXPECT_EQ(a.selStart, b.selStart);
    EXPECT_EQ(a.fileName, b.fileName);
    EXPECT_EQ(a.playCount, b.playCount);
  }
  EXPECT_EQ(want.midi.MidiFile, got.midi.MidiFile) << "step " << step;
  EXPECT_EQ(want.midi.MidiOpen, got.midi.MidiOpen) << "step " << step;
  EXPECT_EQ(want.midi.MidiRepeat, got.midi.MidiRepeat) << "step " << step;
  EXPECT_TRUE(want.quest == got.quest) << "the quest file differs after undoing step " << step;
}

// A quest of loops with no ending: every page offers two to four ways on,
// every third holds a fight whose outcomes lead back in, items are given
// and required, and the tune and track change from page to page.
std::string LoopQuest(int pages, unsigned seed) {
  std::mt19937 rnd(seed);
  auto page = [&] { return std::to_string(1 + rnd() % pages); };
  std::string q = "[Story Info]\r\nTitle=Loops\r\n[CharacterData]\r\nCharCreateAllow=1\r\nCharName=Ann\r\n";
  const char* names[] = {"One", "Two", "Three", "Four"};
  for (int n = 1; n <= pages; ++n) {
    q += "[" + std::to_string(n) + "]\r\nLocation=Room " + std::to_string(n) + "\r\nPage Text=Page " +
         std::to_string(n) + ".\r\nMusic=tune" + std::to_string(n % 3) + ".mid\r\nMp3=track" +
         std::to_string(n % 2) + ".wav\r\n";
    if (n % 3 == 0)
      q += "Battle=1\r\nBattleMonName=Rat\r\nBattleMonHp=6\r\nBattleMonAtk=3\r\nBattleMonExp=60\r\n"
           "BattleMonKeyItem=Tail\r\nBattleWin=" + page() + "\r\nBattleLose=" + page() + "\r\nBattleEscape=" +
           page() + "\r\nBattleEscapecheck=1\r\n";
    int options = 2 + static_cast<int>(rnd() % 3);
    for (int o = 0; o < options; ++o) {
      std::string key = std::string("Option ") + names[o];
      q += key + "=Way " + std::to_string(o + 1) + "\r\n" + key + " Score=" + std::to_string(static_cast<int>(rnd() % 7) - 3) +
           "\r\n" + key + " Destination Page=" + page() + "\r\n";
      if (o == 1) q += "Key Item2=Coin\r\nAdd2=1\r\n";
      if (o == 2) q += "Key Item3=Coin\r\nRequired3=1\r\n";
    }
  }
  return q;
}

class UndoWalk : public ::testing::TestWithParam<unsigned> {
 protected:
  testing::TestProgram t{AllForms()};
  Program& p = t.program;
  std::filesystem::path quest = t.dir.path / "quest.fbw";

  void Open(const std::string& text) {
    std::ofstream(quest, std::ios::binary) << text;
    p.Start();
    p.RunEvent([&] { OpenQuestNamed(p, quest.string()); });
    Settle();
  }
  void Settle() {
    for (int i = 0; i < 5; ++i) {
      t.platform.clock.Set(t.now() + 0.011);
      p.RunEvent([&] { p.RunDue(); });
    }
  }
  // Gets ready for a step the player can take now, drawn at random: an
  // option is selected first, and the step is the Choose. Gives the button
  // the step presses; none when nothing is left to do.
  std::optional<ControlId> RandomStep(std::mt19937& rnd) {
    FormSurface& s = p.surface();
    std::vector<std::pair<ControlId, UserAction>> can;
    for (const char* option : {"Option1", "Option2", "Option3", "Option4"}) {
      ControlId id = s.Id("FrmGame", option);
      if (CannotAct(s, id, UserAction::Select).empty() && !s.At(id).caption.empty()) can.emplace_back(id, UserAction::Select);
    }
    for (const char* button : {"Picture7", "Picture8", "Command9", "Command10"}) {
      ControlId id = s.Id("FrmGame", button);
      if (CannotAct(s, id, UserAction::Click).empty()) can.emplace_back(id, UserAction::Click);
    }
    if (can.empty()) return std::nullopt;
    auto [id, action] = can[rnd() % can.size()];
    if (action == UserAction::Click) return id;
    Act(p, id, action);
    return s.Id("FrmGame", "Picture1");
  }
  // Walks up to `steps` steps, then undoes as far as Undo goes, checking each.
  void WalkAndUndo(int steps, unsigned seed) {
    std::mt19937 rnd(seed);
    std::vector<State> before;
    GameState g(p);
    for (int i = 0; i < steps; ++i) {
      std::optional<ControlId> step = RandomStep(rnd);
      if (!step) break;
      before.push_back(Take(p, quest));
      Act(p, *step, UserAction::Click);
      Settle();
    }
    ASSERT_FALSE(before.empty());
    // What the kept steps hold, at most 1 MB for the hundred.
    std::size_t kept = UndoDepth(p), bytes = UndoMemory(p);
    EXPECT_LE(bytes * kUndoSteps / kept, std::size_t{1} << 20) << kept << " steps hold " << bytes << " bytes";
    RecordProperty("undo_steps", static_cast<int>(kept));
    RecordProperty("undo_bytes", static_cast<int>(bytes));
    std::size_t undoable = std::min(before.size(), kUndoSteps);
    for (std::size_t i = 0; i < undoable; ++i) {
      ASSERT_EQ(WhyNoUndo(p), "") << "after " << i << " undos";
      std::string transcript = g.Text1.Text();
      p.RunEvent([&] { Act(p, p.surface().Id("FrmGame", "mnuundo"), UserAction::Click); });
      Settle();
      int step = static_cast<int>(before.size() - 1 - i);
      ExpectSame(before[step], Take(p, quest), step);
      // The transcript keeps what was told and says the step was taken back.
      EXPECT_TRUE(g.Text1.Text().starts_with(transcript));
      EXPECT_TRUE(g.Text1.Text().ends_with(kUndoneLine));
      if (HasFailure()) return;
    }
    EXPECT_EQ(WhyNoUndo(p), "There is nothing to undo.");
  }
};

int WalkLength() { return testing::SmallCases() ? 40 : 200; }

TEST_F(UndoWalk, DemoQuest) {
  std::string demo = testing::FileBytes(std::filesystem::path(FABLEWRIGHT_SOURCE_DIR) / "quests/demo/demo.fbw");
  ASSERT_FALSE(demo.empty());
  Open(demo);
  WalkAndUndo(WalkLength(), 7);
}

TEST_P(UndoWalk, LoopQuestWithBattles) {
  // The tunes and tracks are there, so that the MIDI voice and the player play.
  for (int n = 0; n < 3; ++n)
    std::ofstream(t.dir.path / ("tune" + std::to_string(n) + ".mid"), std::ios::binary)
        << std::string("MThd\0\0\0\x06\0\0\0\x01\0\x60MTrk\0\0\0\x04\0\xFF\x2F\0", 22);
  for (int n = 0; n < 2; ++n)
    std::ofstream(t.dir.path / ("track" + std::to_string(n) + ".wav"), std::ios::binary) << testing::TestWav(8000, 80000);
  Open(LoopQuest(12, GetParam()));
  WalkAndUndo(WalkLength(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Seeds, UndoWalk, ::testing::Values(1u, 2u, 3u));

constexpr const char* kTwoPages =
    "[Story Info]\r\nTitle=Two: Pages\r\n[1]\r\nLocation=Gate/house\r\nPage Text=A gate.\r\n"
    "Option One=In\r\nOption One Destination Page=2\r\n[2]\r\nLocation=Yard\r\nPage Text=A yard.\r\n";

// A quest may turn undo off; a load forgets the steps.
TEST_F(UndoWalk, TheQuestsSwitchAndALoadEndTheHistory) {
  for (bool off : {true, false}) {
    SCOPED_TRACE(off ? "NoUndo=1" : "undo on");
    std::string text = kTwoPages;
    if (off) text.insert(text.find("[1]"), "NoUndo=1\r\n");
    std::ofstream(quest, std::ios::binary) << text;
    if (!off) p.RunEvent([&] { ReopenQuest(p, quest.string()); });
    else Open(text);
    FormSurface& s = p.surface();
    Act(p, s.Id("FrmGame", "Option1"), UserAction::Select);
    Act(p, s.Id("FrmGame", "Picture1"), UserAction::Click);
    EXPECT_EQ(WhyNoUndo(p), off ? "This quest does not allow undo." : "");
    EXPECT_EQ(s.At(s.Id("FrmGame", "mnuundo")).enabled, !off);
  }
  p.RunEvent([&] { ReopenQuest(p, quest.string()); });
  EXPECT_EQ(WhyNoUndo(p), "There is nothing to undo.");
}

// One autosave a quest file, named so that quests of one name in two folders
// keep two, rewritten only when the game changed; the save dialog's name.
TEST_F(UndoWalk, AutosavesAndTheProposedName) {
  std::filesystem::create_directories(t.dir.path / "other");
  EXPECT_NE(AutosavePath(p, quest.string()), AutosavePath(p, (t.dir.path / "other/quest.fbw").string()));
  EXPECT_TRUE(std::filesystem::path(AutosavePath(p, quest.string())).filename().string().starts_with("quest (autosave "));
  Open(kTwoPages);
  std::string file = AutosavePath(p, quest.string());
  struct stat first {}, again {};
  ASSERT_EQ(::stat(file.c_str(), &first), 0);
  Autosave(p);
  ASSERT_EQ(::stat(file.c_str(), &again), 0);
  EXPECT_EQ(first.st_ino, again.st_ino) << "an unchanged game was written again";
  ASSERT_TRUE(LastAutosave(p));
  EXPECT_EQ(LastAutosave(p)->save, file);
  EXPECT_TRUE(std::regex_match(ProposedSaveName(p),
                               std::regex("Two- Pages - Gate-house - \\d{4}-\\d\\d-\\d\\d \\d\\d\\.\\d\\d\\.sav")))
      << ProposedSaveName(p);
}

}  // namespace
}  // namespace fw

