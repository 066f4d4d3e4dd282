// The editor's Author Tools menu on the working file: a click on the map
// lands on the page Graphviz drew there, at any zoom; each finding selects
// its page; the explorer's report is the command line's, and plays nothing
// of the author's own game or file.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "editor/author_menu.h"
#include "editor/createquest.h"
#include "editor/quest_check.h"
#include "editor/quest_explore.h"
#include "forms/controls.h"
#include "forms/user_actions.h"
#include "shell/forms.h"
#include "store/program_store.h"
#include "test_program.h"

namespace fw {
namespace {

const std::string kFixtures = std::string(FABLEWRIGHT_SOURCE_DIR) + "/tests/fixtures/";

// A started program with the editor open on a fixture quest.
struct Editor {
  testing::TestProgram t{AllForms()};
  FormSurface& s = t.surface();

  explicit Editor(const std::string& fixture) {
    t.program.Start();
    EXPECT_TRUE(OpenEditorOn(t.program, kFixtures + fixture));
  }
  ControlId Id(const char* form, const char* control) { return s.Id(form, control); }
  std::string Act(const char* form, const char* control, UserAction action = UserAction::Click, int value = 0) {
    return fw::Act(t.program, Id(form, control), action, {}, value);
  }
  std::string Caption(const char* form, const char* control) { return std::get<std::string>(s.Get(Id(form, control), Prop::Caption)); }
  std::string SelectedPage() {
    ListBox pg(s, "createquest", "pg");
    return pg.List(pg.ListIndex());
  }
  AuthorToolsModule& tools() { return t.program.Module<AuthorToolsModule>(); }
};

TEST(AuthorMenu, AClickOnTheMapSelectsThePageDrawnThereAtEveryZoom) {
  Editor e("explore/known.fbw");
  ASSERT_EQ(e.Act("createquest", "mnuquestmap"), "");
  EXPECT_TRUE(FormHandle(e.s, "FrmQuestMap").Visible());
  const MapPicture& map = e.tools().map;
  ASSERT_EQ(map.boxes.size(), 8u);
  PictureBox view(e.s, "FrmQuestMap", "MapView");
  EXPECT_EQ(view.Picture().host, e.t.dir.str() + "/questmap.png");
  ASSERT_TRUE(std::filesystem::exists(view.Picture().host));

  ControlId mapView = e.Id("FrmQuestMap", "MapView");
  for (const char* zoomButton : {"cmdFit", "cmdZoomIn", "cmdZoomIn", "cmdZoomOut"}) {
    ASSERT_EQ(e.Act("FrmQuestMap", zoomButton), "");
    double zoom = e.tools().zoom;
    EXPECT_FLOAT_EQ(view.Width(), std::floor(map.width * zoom));
    EXPECT_EQ(e.Caption("FrmQuestMap", "lblZoom"), std::to_string(static_cast<int>(std::lround(zoom * 100))) + "%");
    for (const MapBox& box : map.boxes) {
      // Near a corner of the box, inside it.
      float x = static_cast<float>((box.left + 0.1f * box.width) * zoom);
      float y = static_cast<float>((box.top + 0.9f * box.height) * zoom);
      ASSERT_EQ(ClickAt(e.t.program, mapView, x, y), "");
      EXPECT_EQ(e.SelectedPage(), e.tools().mapPages[box.page]) << zoomButton;
      EXPECT_EQ(e.Caption("FrmQuestMap", "lblMapStatus"), "Page " + e.SelectedPage() + " is selected in the editor.");
    }
  }
  // The map's margin holds no page; a click there leaves the selection.
  std::string before = e.SelectedPage();
  ASSERT_EQ(ClickAt(e.t.program, mapView, 1, 1), "");
  EXPECT_EQ(e.Caption("FrmQuestMap", "lblMapStatus"), "No page there.");
  EXPECT_EQ(e.SelectedPage(), before);
  EXPECT_NE(ClickAt(e.t.program, mapView, view.Width() + 10, 1), "");
}

TEST(AuthorMenu, TheMapZoomsByStepsAndRedrawsWhatTheAuthorTyped) {
  Editor e("explore/known.fbw");
  ASSERT_EQ(e.Act("createquest", "mnuquestmap"), "");
  ASSERT_EQ(e.Act("FrmQuestMap", "cmdFit"), "");
  double fit = e.tools().zoom;
  EXPECT_LE(fit, 1.0);
  for (int i = 0; i < 10; ++i) ASSERT_EQ(e.Act("FrmQuestMap", "cmdZoomIn"), "");
  EXPECT_EQ(e.Caption("FrmQuestMap", "lblZoom"), "300%");
  for (int i = 0; i < 10; ++i) ASSERT_EQ(e.Act("FrmQuestMap", "cmdZoomOut"), "");
  EXPECT_EQ(e.Caption("FrmQuestMap", "lblZoom"), "25%");

  // A page added and written in the editor shows after Redraw, which keeps the zoom.
  ASSERT_EQ(e.Act("createquest", "Command1"), "");
  ASSERT_EQ(e.Act("createquest", "pg", UserAction::Choose, 8), "");
  ASSERT_EQ(fw::Act(e.t.program, e.Id("createquest", "Text1"), UserAction::Type, "A ladder."), "");
  ASSERT_EQ(e.Act("FrmQuestMap", "cmdRedraw"), "");
  EXPECT_EQ(e.tools().map.boxes.size(), 9u);
  EXPECT_EQ(e.tools().mapPages.back(), "9");
  EXPECT_EQ(e.Caption("FrmQuestMap", "lblZoom"), "25%");
}

TEST(AuthorMenu, EachFindingSelectsItsPage) {
  Editor e("check/beyond-page-count.fbw");
  ASSERT_EQ(e.Act("createquest", "mnucheckquest"), "");
  EXPECT_TRUE(FormHandle(e.s, "FrmFindings").Visible());
  std::vector<Finding> findings = *CheckQuest(e.t.program, "tmpquest.ini");
  ListBox list(e.s, "FrmFindings", "lstFindings");
  ASSERT_EQ(list.ListCount(), static_cast<int>(findings.size()));
  ASSERT_FALSE(findings.empty());
  for (int i = 0; i < list.ListCount(); ++i) {
    const Finding& f = findings[i];
    EXPECT_EQ(list.List(i), f.page + ": " + (f.level == Finding::Level::Error ? "error" : "warning") + ": " + f.message);
    ASSERT_EQ(e.Act("FrmFindings", "lstFindings", UserAction::Choose, i), "");
    // Page 5 lies beyond Number Of Pages: the editor has no entry for it.
    if (f.page == "5") {
      EXPECT_EQ(e.Caption("FrmFindings", "lblFindingStatus"), "Page 5 has no entry in the editor's page list.");
    } else {
      EXPECT_EQ(e.SelectedPage(), f.page);
      EXPECT_EQ(e.Caption("FrmFindings", "lblFindingStatus"), "Page " + f.page + " is selected in the editor.");
    }
  }
}

TEST(AuthorMenu, TheReportIsTheExplorersAndLeavesTheAuthorsGameAlone) {
  Editor e("explore/known.fbw");
  std::string working = testing::FileBytes(e.t.dir.str() + "/tmpquest.ini");
  std::string questfil = Label(e.s, "FrmGame", "questfil").Caption();
  ASSERT_EQ(e.Act("createquest", "mnuexplorequest"), "");
  EXPECT_TRUE(FormHandle(e.s, "FrmExplore").Visible());
  std::string report = TextBox(e.s, "FrmExplore", "txtReport").Text();
  EXPECT_TRUE(report.starts_with("States: 9\r\nPages reached (7): 1, 2, 3, 4, 5, 6, 8\r\nPages never reached (1): 7\r\n"))
      << report;
  EXPECT_NE(report.find("Dead end at page 8: score -2\r\n"), std::string::npos);
  EXPECT_NE(report.find("Battle at page 6 (Rat): met in 1 states\r\n  arriving with"), std::string::npos);
  EXPECT_EQ(report.find('\n', report.find('\n') + 1) - 1, report.find('\r', report.find('\n') + 1));
  EXPECT_EQ(TextBox(e.s, "FrmExplore", "txtReport").SelStart(), 0);
  // Played in a program of its own, on a copy that is gone afterwards.
  EXPECT_EQ(testing::FileBytes(e.t.dir.str() + "/tmpquest.ini"), working);
  EXPECT_FALSE(std::filesystem::exists(e.t.dir.str() + "/tmpexplore.ini"));
  EXPECT_EQ(Label(e.s, "FrmGame", "questfil").Caption(), questfil);
  EXPECT_EQ(e.SelectedPage(), "1");

  // The author gives the wall a way down: the dead end goes, and the report follows.
  ASSERT_EQ(e.Act("createquest", "pg", UserAction::Choose, 7), "");
  ASSERT_EQ(fw::Act(e.t.program, e.Id("createquest", "Text3"), UserAction::Type, "Climb down"), "");
  ASSERT_EQ(fw::Act(e.t.program, e.Id("createquest", "Text7"), UserAction::Type, "1"), "");
  ASSERT_EQ(e.Act("FrmExplore", "cmdExploreAgain"), "");
  report = TextBox(e.s, "FrmExplore", "txtReport").Text();
  EXPECT_EQ(report.find("Dead end at page 8"), std::string::npos) << report;
}

}  // namespace
}  // namespace fw
