// The form surface: load order, events raised by property sets, and the
// meanings the logic rests on.
#include <gtest/gtest.h>

#include <fstream>

#include "forms/controls.h"
#include "forms/convert.h"
#include "test_program.h"

namespace fw {
namespace {

// Appends to the log label, where the handlers below leave their traces.
void Append(Program& p, std::string_view s) {
  Label log(p.surface(), "FrmTest", "Log");
  log.SetCaption(log.Caption() + std::string(s));
}

void Count(Program& p, const char* label) {
  Label l(p.surface(), "FrmTest", label);
  l.SetCaption(NumberText(ToDouble(l.Caption()) + 1));
}

void Form_Load(Program& p) { Append(p, "load;"); }
void Text1_Change(Program& p) {
  Append(p, "t1[");
  TextBox(p.surface(), "FrmTest", "Text2").SetText(TextBox(p.surface(), "FrmTest", "Text1").Text() + "!");
  Append(p, "]");
}
void Text2_Change(Program& p) { Append(p, "t2;"); }
void Check1_Click(Program& p) { Append(p, "check;"); }
void List1_Click(Program& p) { Append(p, "list;"); }
void Tick_Timer(Program& p) { Count(p, "Ticks"); }
void Slow_Timer(Program& p) { Count(p, "SlowTicks"); }
void Other_Load(Program& p) { Append(p, "other;"); }
void Other_QueryUnload(Program& p, bool& cancel) {
  std::string field = Label(p.surface(), "FrmOther", "Field").Caption();
  cancel = field == "keep" || field == "self";
  if (field != "self") return;
  Append(p, "ask;");
  FormHandle(p.surface(), "FrmOther").Unload();
}

constexpr ControlDecl kTest[] = {
    {.name = "Log", .kind = Kind::Label, .visible = false},
    {.name = "Ticks", .kind = Kind::Label, .caption = "0"},
    {.name = "SlowTicks", .kind = Kind::Label, .caption = "0"},
    {.name = "Text1", .kind = Kind::TextBox},
    {.name = "Text2", .kind = Kind::TextBox},
    {.name = "Check1", .kind = Kind::CheckBox},
    {.name = "List1", .kind = Kind::ListBox},
    {.name = "Opt1", .kind = Kind::OptionButton},
    {.name = "Opt2", .kind = Kind::OptionButton},
    {.name = "Bar", .kind = Kind::ProgressBar},
    {.name = "Panel", .kind = Kind::PictureBox, .visible = false},
    {.name = "Inner", .kind = Kind::Label, .parent = "Panel"},
    {.name = "Tick", .kind = Kind::Timer, .parent = "Panel", .interval = 10},
    {.name = "Slow", .kind = Kind::Timer, .enabled = false, .interval = 50},
    {.name = "dlg", .kind = Kind::FileDialog, .filter = "*.sav|*.sav", .defaultExt = "*.sav"},
};
constexpr HandlerDecl kTestHandlers[] = {
    {"Form", Event::Load, Form_Load},       {"Text1", Event::Change, Text1_Change},
    {"Text2", Event::Change, Text2_Change}, {"Check1", Event::Click, Check1_Click},
    {"List1", Event::Click, List1_Click},   {"Tick", Event::Timer, Tick_Timer},
    {"Slow", Event::Timer, Slow_Timer},
};
constexpr ControlDecl kOther[] = {{.name = "Field", .kind = Kind::Label, .caption = "fresh"}};
constexpr HandlerDecl kOtherHandlers[] = {
    {"Form", Event::Load, Other_Load},
    {"Form", Event::QueryUnload, Other_QueryUnload},
};
const FormDecl kTestTable{.name = "FrmTest", .caption = "Test", .width = 4000, .height = 3000, .controls = kTest};
const FormDecl kOtherTable{.name = "FrmOther", .caption = "Other", .width = 2000, .height = 1000, .controls = kOther};
const FormDef kForms[] = {{&kTestTable, kTestHandlers}, {&kOtherTable, kOtherHandlers}};

class SurfaceTest : public ::testing::Test {
 protected:
  testing::TestProgram t{kForms};
  FormSurface& s = t.surface();
  std::string Log() { return Label(s, "FrmTest", "Log").Caption(); }
};

TEST_F(SurfaceTest, FormLoadsOnceAtFirstReferenceBeforeTheAccessReturns) {
  EXPECT_FALSE(s.IsLoaded(0));
  EXPECT_EQ(Log(), "load;");  // the read itself loaded the form
  FormHandle(s, "FrmTest").Hide();
  FormHandle(s, "FrmTest").Show();
  EXPECT_EQ(Log(), "load;");
  Label(s, "FrmOther", "Field").Caption();
  EXPECT_EQ(Log(), "load;other;");
}

TEST_F(SurfaceTest, SettingTextRaisesChangeNestedAndOnlyOnARealChange) {
  TextBox(s, "FrmTest", "Text1").SetText("a");
  EXPECT_EQ(Log(), "load;t1[t2;]");
  TextBox(s, "FrmTest", "Text1").SetText("a");
  EXPECT_EQ(Log(), "load;t1[t2;]");
  EXPECT_EQ(TextBox(s, "FrmTest", "Text2").Text(), "a!");
}

TEST_F(SurfaceTest, CheckBoxAndListRaiseClickAsThePlatformDoes) {
  CheckBox check(s, "FrmTest", "Check1");
  check.SetValue(1);
  check.SetValue(1);
  check.SetValue(0);
  ListBox list(s, "FrmTest", "List1");
  list.AddItem("x");
  list.SetSelected(0, true);
  EXPECT_EQ(Log(), "load;check;check;list;");
  EXPECT_EQ(list.ListIndex(), 0);
  EXPECT_EQ(list.List(list.ListCount()), "");
  EXPECT_EQ(list.List(-1), "");
  list.Clear();
  EXPECT_EQ(list.ListIndex(), -1);
}

// A check box refuses a value it cannot show; a list entry taken out moves
// the selection behind it up, and the selected one leaves nothing selected.
TEST_F(SurfaceTest, CheckBoxRefusesStrangeValuesAndRemovedEntriesShiftTheSelection) {
  CheckBox check(s, "FrmTest", "Check1");
  check.SetValue(2);
  EXPECT_THROW(check.SetValue(3), Failure);
  EXPECT_THROW(check.SetValue(-1), Failure);
  EXPECT_EQ(check.Value(), 2);
  ListBox list(s, "FrmTest", "List1");
  for (const char* item : {"a", "b", "c"}) list.AddItem(item);
  list.SetSelected(2, true);
  list.RemoveItem(0);
  EXPECT_EQ(list.ListIndex(), 1);
  EXPECT_EQ(list.List(1), "c");
  list.RemoveItem(1);
  EXPECT_EQ(list.ListIndex(), -1);
  EXPECT_THROW(list.RemoveItem(1), Failure);
  EXPECT_EQ(list.ListCount(), 1);
}

TEST_F(SurfaceTest, OptionButtonsOfAFormExcludeEachOther) {
  OptionButton a(s, "FrmTest", "Opt1"), b(s, "FrmTest", "Opt2");
  a.SetValue(true);
  b.SetValue(true);
  EXPECT_FALSE(a.Value());
  EXPECT_TRUE(b.Value());
  b.SetValue(false);
  EXPECT_FALSE(b.Value());
}

TEST_F(SurfaceTest, ProgressBarOutOfRangeFailsAndSkipLeavesTheValue) {
  ProgressBar bar(s, "FrmTest", "Bar");
  bar.SetValue(40);
  EXPECT_THROW(bar.SetValue(101), Failure);
  EXPECT_THROW(bar.SetValue(-1), Failure);
  Skip([&] { bar.SetValue(500); });
  EXPECT_EQ(bar.Value(), 40);
  bar.SetMax(250);
  bar.SetValue(250);
  EXPECT_EQ(FormatValue(s.Get(bar.id(), Prop::Value)), "250");
  bar.SetMax(30);  // a lower end takes the value with it
  EXPECT_EQ(bar.Value(), 30);
}

TEST_F(SurfaceTest, HiddenContainerHidesChildrenButKeepsTheirOwnVisible) {
  FormHandle(s, "FrmTest").Show();
  ControlId inner = s.Id("FrmTest", "Inner");
  EXPECT_TRUE(s.At(inner).visible);
  EXPECT_FALSE(s.Shown(inner));
  s.SetVisible(s.Id("FrmTest", "Panel"), true);
  EXPECT_TRUE(s.Shown(inner));
  FormHandle(s, "FrmTest").Hide();
  EXPECT_FALSE(s.Shown(inner));
}

TEST_F(SurfaceTest, UnloadAsksQueryUnloadAndAReloadStartsFresh) {
  Label field(s, "FrmOther", "Field");
  field.SetCaption("keep");
  EXPECT_FALSE(s.Unload(1, true));
  EXPECT_EQ(field.Caption(), "keep");
  field.SetCaption("changed");
  EXPECT_TRUE(s.Unload(1, true));
  EXPECT_FALSE(s.IsLoaded(1));
  EXPECT_EQ(field.Caption(), "fresh");  // loaded again from the table
  EXPECT_EQ(Log(), "load;other;other;");
}

// A form that unloads itself from its own Form_QueryUnload is asked once,
// and is gone however the question ended.
TEST_F(SurfaceTest, AnUnloadInsideQueryUnloadDestroysWithoutAskingAgain) {
  Label(s, "FrmOther", "Field").SetCaption("self");
  s.Unload(1, true);
  EXPECT_FALSE(s.IsLoaded(1));
  EXPECT_EQ(Log(), "load;other;ask;");
}

TEST_F(SurfaceTest, TimersTickInHiddenPanelsAndDisabledOnesWaitForEnable) {
  Log();
  t.platform.clock.Set(t.now() + 0.1);
  t.program.RunDue();
  // A late run of the loop makes up for nothing: one tick, then every 10 ms.
  EXPECT_EQ(Label(s, "FrmTest", "Ticks").Caption(), "1");
  t.program.Pause(0.1);
  EXPECT_EQ(Label(s, "FrmTest", "Ticks").Caption(), "11");
  EXPECT_EQ(Label(s, "FrmTest", "SlowTicks").Caption(), "0");
  Timer slow(s, "FrmTest", "Slow");
  slow.SetEnabled(true);
  t.program.Pause(0.12);
  EXPECT_EQ(Label(s, "FrmTest", "SlowTicks").Caption(), "2");
}

TEST_F(SurfaceTest, PauseOfZeroRunsNoEventsAndPauseWaitsAtLeastItsTime) {
  Log();
  double start = t.now();
  t.program.Pause(0);
  EXPECT_EQ(t.now(), start);
  t.program.Pause(0.2);
  EXPECT_GE(t.now() - start, 0.2);
  EXPECT_LT(t.now() - start, 0.21);
  EXPECT_NE(Label(s, "FrmTest", "Ticks").Caption(), "0");
}

TEST_F(SurfaceTest, PauseAcrossMidnightWaitsItsTimeNotADay) {
  Log();
  t.platform.clock.Set(86400 - 0.05);
  struct Wrap : EventPump {
    VirtualClock& c;
    explicit Wrap(VirtualClock& c) : c(c) {}
    void Pump(Program&) override {
      double n = c.Now() + 0.001;
      c.Set(n >= 86400 ? n - 86400 : n);
    }
  } wrap{t.platform.clock};
  Services services = t.platform.services();
  services.pump = &wrap;
  testing::TempDir dir;
  Program p(services, AppInfo{dir.str(), "x", dir.str(), dir.str()}, kForms);
  p.Pause(0.2);
  EXPECT_NEAR(t.now(), 0.15, 0.002);
}

TEST_F(SurfaceTest, CancelledDialogKeepsTheEarlierName) {
  FileDialog dlg(s, "FrmTest", "dlg");
  t.platform.dialogs.QueueFile("FrmTest.dlg", "/games/one.sav");
  EXPECT_TRUE(t.program.ShowOpen(dlg.id()));
  EXPECT_EQ(dlg.FileTitle(), "one.sav");
  t.platform.dialogs.QueueFile("FrmTest.dlg", std::nullopt);
  EXPECT_FALSE(t.program.ShowSave(dlg.id()));
  EXPECT_EQ(dlg.FileName(), "/games/one.sav");
  dlg.SetFileName("");
  t.platform.dialogs.QueueFile("FrmTest.dlg", std::nullopt);
  EXPECT_FALSE(t.program.ShowOpen(dlg.id()));
  EXPECT_EQ(dlg.FileName(), "");
}

TEST_F(SurfaceTest, EndStopsEveryFurtherHandler) {
  Log();
  t.program.RunEvent([&] {
    Append(t.program, "before;");
    t.program.End();
  });
  EXPECT_TRUE(t.program.Ended());
  t.program.RunEvent([&] { Append(t.program, "after;"); });
  TextBox(s, "FrmTest", "Text1").SetText("x");  // raises no Change any more
  EXPECT_EQ(Log(), "load;before;");
}

TEST_F(SurfaceTest, MessageBoxWithoutTitleShowsTheApplicationTitle) {
  t.program.MsgBox("Hello");
  t.platform.dialogs.QueueAnswer(7);
  EXPECT_EQ(t.program.MsgBox("Sure?", 4, "WARNING!!!!"), 7);
  auto& boxes = t.platform.dialogs.unchecked();
  ASSERT_EQ(boxes.size(), 2u);
  EXPECT_EQ(boxes[0].title, "Fablewright 2004");
  EXPECT_EQ(boxes[1].title, "WARNING!!!!");
  EXPECT_THROW(t.program.MsgBox("Again?", 4), ScriptError);
}

TEST_F(SurfaceTest, LoadPictureFailsOnMissingOrForeignFilesAndClearsOnEmpty) {
  std::string dir = t.dir.str();
  {
    std::ofstream(dir + "/a.jpg") << "\xFF\xD8\xFF\xE0rest";
    std::ofstream(dir + "/b.jpg") << "not a picture";
  }
  EXPECT_EQ(t.program.LoadPicture("a.jpg").host, dir + "/a.jpg");
  EXPECT_THROW(t.program.LoadPicture("b.jpg"), Failure);
  EXPECT_THROW(t.program.LoadPicture("missing.jpg"), Failure);
  EXPECT_EQ(t.program.LoadPicture("").path, "");
}

}  // namespace
}  // namespace fw
