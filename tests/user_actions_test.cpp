// What a user can do to a control, as every binding asks it, and the one
// assembly that makes a program for a binding.
#include <gtest/gtest.h>

#include "app/assembly.h"
#include "forms/controls.h"
#include "forms/failure.h"
#include "forms/user_actions.h"
#include "test_program.h"

namespace fw {
namespace {

// Each handler leaves its trace in the log label.
void Trace(Program& p, std::string_view s) {
  Label log(p.surface(), "FrmAct", "Log");
  log.SetCaption(log.Caption() + std::string(s));
}
void Go_Click(Program& p) { Trace(p, "go;"); }
void Name_Change(Program& p) { Trace(p, "name;"); }
void Tick_Click(Program& p) { Trace(p, "tick;"); }
void Fails_Click(Program& p) {
  Trace(p, "before;");
  throw Failure("Overflow");
}

constexpr ControlDecl kControls[] = {
    {.name = "Log", .kind = Kind::Label, .visible = false},
    {.name = "Go", .kind = Kind::CommandButton, .left = 100, .top = 100, .width = 600, .height = 300},
    {.name = "Name", .kind = Kind::TextBox, .left = 100, .top = 500, .width = 600, .height = 300},
    {.name = "Shown", .kind = Kind::TextBox, .look = {.readOnly = true}},
    {.name = "Tick", .kind = Kind::CheckBox, .left = 2000, .width = 300, .height = 300},
    {.name = "List", .kind = Kind::ListBox, .left = 2000, .top = 500, .width = 600, .height = 600},
    {.name = "Fails", .kind = Kind::CommandButton, .left = 2000, .top = 1500, .width = 300, .height = 300},
    {.name = "Clock", .kind = Kind::Timer, .interval = 1000},
    // A panel over the left half, hidden until a test shows it.
    {.name = "Panel", .kind = Kind::PictureBox, .width = 1500, .height = 2000, .visible = false},
};
constexpr HandlerDecl kHandlers[] = {
    {"Go", Event::Click, Go_Click},
    {"Name", Event::Change, Name_Change},
    {"Tick", Event::Click, Tick_Click},
    {"Fails", Event::Click, Fails_Click},
};
// T stands for Go first, then for Tick.
constexpr KeyDecl kKeys[] = {{"G", "Go"}, {"T", "Go"}, {"T", "Tick"}};
const FormDecl kTable{
    .name = "FrmAct", .caption = "Act", .width = 4000, .height = 3000, .controls = kControls, .keys = kKeys};
const FormDef kForms[] = {{&kTable, kHandlers}};

class UserActionsTest : public ::testing::Test {
 protected:
  testing::TestProgram t{kForms};
  FormSurface& s = t.surface();
  ControlId Id(const char* name) { return s.Id("FrmAct", name); }
  std::string Log() { return Label(s, "FrmAct", "Log").Caption(); }
};

TEST_F(UserActionsTest, ACoveredOrHiddenControlIsRefusedAndNothingRuns) {
  s.Show(0);
  PictureBox(s, "FrmAct", "Panel").SetVisible(true);
  EXPECT_EQ(Act(t.program, Id("Go"), UserAction::Click), "is covered by Panel");
  EXPECT_EQ(Act(t.program, Id("Name"), UserAction::Type, "Ann"), "is covered by Panel");
  EXPECT_EQ(Log(), "");
  EXPECT_EQ(TextBox(s, "FrmAct", "Name").Text(), "");
  // The right half lies outside the panel.
  EXPECT_EQ(Act(t.program, Id("Tick"), UserAction::Check, {}, 1), "");
  PictureBox(s, "FrmAct", "Panel").SetVisible(false);
  EXPECT_EQ(Act(t.program, Id("Go"), UserAction::Click), "");
  CommandButton(s, "FrmAct", "Go").SetVisible(false);
  EXPECT_EQ(Act(t.program, Id("Go"), UserAction::Click), "is not on screen");
  EXPECT_EQ(Log(), "tick;go;");
}

TEST_F(UserActionsTest, AnActionTheControlDoesNotTakeIsRefused) {
  s.Show(0);
  EXPECT_EQ(Act(t.program, Id("Clock"), UserAction::Click), "is a Timer, which does not take that action");
  EXPECT_EQ(Act(t.program, Id("Name"), UserAction::Select), "is a TextBox, which does not take that action");
  EXPECT_EQ(Act(t.program, Id("Shown"), UserAction::Type, "x"), "is read-only");
  EXPECT_EQ(Act(t.program, Id("Tick"), UserAction::Check, {}, 2), "takes 0 or 1");
  ListBox(s, "FrmAct", "List").AddItem("only");
  EXPECT_EQ(Act(t.program, Id("List"), UserAction::Choose, {}, 1), "has no entry 1");
  EXPECT_EQ(Act(t.program, Id("List"), UserAction::Choose, {}, -1), "has no entry -1");
  EXPECT_EQ(Act(t.program, Id("List"), UserAction::Choose, {}, 0), "");
  EXPECT_EQ(ListBox(s, "FrmAct", "List").ListIndex(), 0);
}

// A key does what a click on the first of its controls that can take it
// does; the key a window shows beside a control is the first naming it.
TEST_F(UserActionsTest, AKeyClicksTheFirstOfItsControlsThatCanTakeIt) {
  s.Show(0);
  EXPECT_STREQ(KeyOf(kTable, "Go"), "G");
  EXPECT_EQ(KeyOf(kTable, "Name"), nullptr);
  EXPECT_EQ(PressKey(t.program, 0, "g"), "");  // letter case does not count
  EXPECT_EQ(PressKey(t.program, 0, "X"), "has no key X");
  PictureBox(s, "FrmAct", "Panel").SetVisible(true);
  EXPECT_EQ(PressKey(t.program, 0, "G"), "cannot take key G: Go is covered by Panel");
  EXPECT_EQ(PressKey(t.program, 0, "T"), "");
  EXPECT_EQ(Log(), "go;tick;");
}

TEST_F(UserActionsTest, TheUserRetypingOrRecheckingStillRaisesTheEvent) {
  s.Show(0);
  Act(t.program, Id("Name"), UserAction::Type, "Ann");
  Act(t.program, Id("Name"), UserAction::Type, "Ann");  // typed over with the same text
  Act(t.program, Id("Tick"), UserAction::Check, {}, 0);  // a click that leaves it clear
  EXPECT_EQ(Log(), "name;name;tick;");
}

TEST_F(UserActionsTest, AFailureNoHandlerCaughtEndsTheEventNotTheProgram) {
  s.Show(0);
  EXPECT_EQ(Act(t.program, Id("Fails"), UserAction::Click), "");
  EXPECT_EQ(Act(t.program, Id("Go"), UserAction::Click), "");
  EXPECT_EQ(Log(), "before;go;");
  EXPECT_FALSE(t.program.Over());
}

TEST(Assembly, KeepsWhatTheBindingBringsAndAddsTheRest) {
  testing::TempDir dir;
  HeadlessPlatform platform;
  Launch launch{.appDir = dir.str(), .exeName = "game", .home = dir.str(), .sound = false, .seed = 7};
  Assembly assembly(launch);
  Services own{};
  own.pump = &platform.pump;
  own.dialogs = &platform.dialogs;
  own.players = &platform.players;
  auto program = assembly.Maker()(own);
  const Services& got = program->services();
  EXPECT_EQ(got.pump, &platform.pump);
  EXPECT_EQ(got.dialogs, &platform.dialogs);
  EXPECT_NE(got.clock, nullptr);
  EXPECT_NE(got.files, nullptr);
  EXPECT_NE(got.processes, nullptr);
  ASSERT_NE(got.sequencer, nullptr);
  EXPECT_EQ(program->AppEXEName(), "game");
  EXPECT_GE(program->surface().FindForm("FrmGame"), 0);
  // A seed asked for gives the same dice in every run, whatever the clock.
  Assembly again(launch);
  auto replay = again.Make(own);
  for (int i = 0; i < 3; ++i) {
    program->Randomize();
    replay->Randomize();
    EXPECT_EQ(program->Rnd(), replay->Rnd());
  }
  // A headless run brings every service, and keeps its own dice.
  auto headless = assembly.Make(platform.services());
  EXPECT_EQ(headless->services().random, &platform.random);
  EXPECT_EQ(headless->services().clock, &platform.clock);
}

}  // namespace
}  // namespace fw
