// The game window's shell where a script cannot reach: the start-up order
// and its pause on the clock, a press inside a press, the credits' boundary,
// the web link, and where the update program may come from.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>

#include "forms/controls.h"
#include "forms/user_actions.h"
#include "platform/program_search.h"
#include "shell/credits.h"
#include "shell/forms.h"
#include "shell/frmgame.h"
#include "test_program.h"

namespace fw {
namespace {

// Every form's load, caption-free changes and showing, with the clock.
struct FormLog : SurfaceObserver {
  FormSurface* s = nullptr;
  Clock* clock = nullptr;
  std::vector<std::pair<std::string, double>> events;
  void Add(int form, const std::string& what) { events.emplace_back(s->Table(form).name + (" " + what), clock->Now()); }
  void FormLoaded(int form) override { Add(form, "loads"); }
  void FormChanged(int form, Prop prop) override {
    if (prop == Prop::Icon) Add(form, "takes its icon");
    if (prop == Prop::Visible) Add(form, s->IsLoaded(form) && s->Form(form).visible ? "shows" : "hides");
  }
  void ControlChanged(ControlId id, Prop prop) override {
    if (s->Decl(id).name == std::string("questfil") && prop == Prop::Caption) Add(id.form, "opens its quest");
  }
};

TEST(Splash, LoadsThePackagedGameBehindItselfThenShowsItForThreeSeconds) {
  testing::TestProgram t{AllForms()};
  std::ofstream(t.dir.str() + "/game.dat") << "[loaddat]\r\nQuestFile=q.fbw\r\n[Game Data]\r\nTitle=Q\r\n";
  std::ofstream(t.dir.str() + "/q.fbw") << "[1]\r\nPage Text=Hello.\r\nOption One=On\r\n";
  FormLog log;
  log.s = &t.surface();
  log.clock = &t.platform.clock;
  t.surface().SetObserver(&log);
  double start = t.now();
  t.program.Start();

  std::vector<std::string> order;
  for (auto& [what, when] : log.events) order.push_back(what);
  EXPECT_EQ(order, (std::vector<std::string>{"FrmSplash loads", "FrmGame loads", "FrmGame opens its quest",
                                             "FrmSplash takes its icon", "FrmSplash shows", "FrmGame shows",
                                             "FrmSplash hides"}));
  ASSERT_EQ(log.events.size(), 7u);
  EXPECT_EQ(log.events[4].second, start);  // nothing waited before the splash shows
  double shown = log.events[5].second - log.events[4].second;
  EXPECT_GE(shown, 3.0);
  EXPECT_LT(shown, 3.002);  // Pause returns at the first look past its three seconds
  EXPECT_EQ(log.events[6].second, log.events[5].second);
  // The splash stays loaded, hidden, and the game's timers ran meanwhile.
  EXPECT_TRUE(t.surface().IsLoaded(t.surface().FindForm("FrmSplash")));
  EXPECT_TRUE(OptionButton(t.surface(), "FrmGame", "Option1").Visible());
  EXPECT_FALSE(OptionButton(t.surface(), "FrmGame", "Option2").Visible());
}

// A key or click on the splash (which a binding reports as the form's own
// click) lets the player in at once; no other window takes such a click.
TEST(Splash, AKeyOrClickOnItCutsItsPauseShort) {
  testing::TestProgram t{AllForms()};
  FormSurface& s = t.surface();
  int splash = s.FindForm("FrmSplash"), game = s.FindForm("FrmGame");
  double start = t.now();
  std::string refused;
  t.program.Post(start + 1, [&](Program& p) {
    refused = ClickForm(p, game);
    EXPECT_EQ(ClickForm(p, splash), "");
  });
  t.program.Start();
  EXPECT_EQ(refused, "is not open");
  EXPECT_LT(t.now() - start, 1.01);
  EXPECT_TRUE(s.Form(game).visible);
  EXPECT_FALSE(s.Form(splash).visible);
  EXPECT_EQ(ClickForm(t.program, splash), "is not open");
  EXPECT_EQ(ClickForm(t.program, game), "takes no click");
}

TEST(PressAnimation, ASecondPressDuringTheFirstEndsWithTheButtonInItsPlace) {
  testing::TestProgram t{AllForms()};
  t.program.Start();
  FormSurface& s = t.surface();
  PictureBox(s, "FrmGame", "Picture2").SetVisible(false);
  ControlId button = s.Id("FrmGame", "Picture3");
  std::vector<std::pair<float, float>> seen;
  auto look = [&](Program&) { seen.emplace_back(s.At(button).left, s.At(button).top); };
  t.program.Post(t.now() + 0.05, look);
  t.program.Post(t.now() + 0.1, [&](Program&) { s.Raise(button, Event::Click); });
  t.program.Post(t.now() + 0.15, look);
  t.program.Post(t.now() + 0.25, look);
  t.program.RunEvent([&] { s.Raise(button, Event::Click); });
  t.program.RunDue();
  ASSERT_EQ(seen.size(), 3u);
  EXPECT_EQ(seen[0], std::make_pair(410.0f, 5450.0f));  // pressed once
  EXPECT_EQ(seen[1], std::make_pair(460.0f, 5500.0f));  // pressed twice
  // The outer press waits inside the inner one's pause: both still hold.
  EXPECT_EQ(seen[2], std::make_pair(460.0f, 5500.0f));
  EXPECT_EQ(s.At(button).left, 360);
  EXPECT_EQ(s.At(button).top, 5400);
  EXPECT_TRUE(PictureBox(s, "FrmGame", "InvBox").Visible());
}

TEST(Credits, ATopOfExactlyMinus15200ScrollsOnAndTheNextTickEndsTheRun) {
  testing::TestProgram t{AllForms()};
  t.program.Start();
  FormSurface& s = t.surface();
  Image picture(s, "FrmGame", "Image3");
  t.program.RunEvent([&] { frmgame::Image9_Click(t.program); });
  picture.SetTop(-15200);
  frmgame::Timer4_Timer(t.program);
  EXPECT_EQ(picture.Top(), -15225);
  EXPECT_TRUE(PictureBox(s, "FrmGame", "credits").Visible());
  frmgame::Timer4_Timer(t.program);
  EXPECT_EQ(picture.Top(), 6095);
  EXPECT_FALSE(PictureBox(s, "FrmGame", "credits").Visible());
  EXPECT_FALSE(Timer(s, "FrmGame", "Timer4").Enabled());
}

TEST(WebLink, OpensTheMakersSiteAndGoesOn) {
  testing::TestProgram t{AllForms()};
  t.program.Start();
  EXPECT_EQ(Act(t.program, t.surface().Id("FrmGame", "Label14"), UserAction::Click), "");
  EXPECT_EQ(t.platform.processes.opened, std::vector<std::string>{kWebAddress});
  EXPECT_FALSE(t.program.Over());
}

// Sets PATH for one test and puts it back.
struct PathSetting {
  std::string old;
  explicit PathSetting(const std::string& path) : old(std::getenv("PATH") ? std::getenv("PATH") : "") {
    ::setenv("PATH", path.c_str(), 1);
  }
  ~PathSetting() { ::setenv("PATH", old.c_str(), 1); }
};

TEST(FindProgram, TakesTheAbsoluteFoldersOfThePathAndNeverTheCurrentOne) {
  testing::TempDir here, bin;
  for (const auto& dir : {here.str(), bin.str()}) {
    std::ofstream(dir + "/updater") << "#!/bin/sh\n";
    ::chmod((dir + "/updater").c_str(), 0755);
  }
  std::ofstream(bin.str() + "/plain") << "not runnable";
  char old[4096];
  ASSERT_NE(::getcwd(old, sizeof old), nullptr);
  ASSERT_EQ(::chdir(here.str().c_str()), 0);
  {
    PathSetting path(":.:./sub:" + here.path.filename().string());
    EXPECT_EQ(FindProgram("updater"), "");
  }
  {
    PathSetting path(".:" + bin.str());
    EXPECT_EQ(FindProgram("updater"), bin.str() + "/updater");
    EXPECT_EQ(FindProgram("plain"), "");
  }
  EXPECT_EQ(FindProgram(here.str() + "/updater"), here.str() + "/updater");
  EXPECT_EQ(::chdir(old), 0);
}

}  // namespace
}  // namespace fw
