// The editor's author tools in the window: the map is the picture Graphviz
// drew, scrolled and zoomed in its view, and a mouse click on a page's box
// selects that page; the findings and the report in their windows. Pictures
// of all three are kept.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QImage>
#include <QListWidget>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

#include <cmath>

#include "bindings/qt/qt_window.h"
#include "editor/author_menu.h"
#include "editor/createquest.h"
#include "forms/controls.h"
#include "forms/user_actions.h"
#include "screenshots.h"
#include "shell/forms.h"
#include "test_program.h"

namespace fw {
namespace {

const std::string kQuest = std::string(FABLEWRIGHT_SOURCE_DIR) + "/tests/fixtures/explore/known.fbw";

struct AuthorTools {
  testing::TestProgram t{AllForms()};
  QtWindows windows{t.program};
  FormSurface& s = t.surface();

  AuthorTools() {
    t.surface().SetObserver(&windows);
    t.program.Start();
    EXPECT_TRUE(OpenEditorOn(t.program, kQuest));
  }
  void Menu(const char* item) { ASSERT_EQ(Act(t.program, s.Id("createquest", item), UserAction::Click), ""); }
  QWidget* Widget(const char* form, const char* control) { return windows.WidgetOf(s.Id(form, control)); }
  std::string SelectedPage() {
    ListBox pg(s, "createquest", "pg");
    return pg.List(pg.ListIndex());
  }
};

// Whether the outline of a box runs along its top edge on the picture: a
// dark pixel near a quarter, the middle or three quarters of the way (an
// unreachable page's grey outline is dashed).
bool OutlineAlongTop(const QImage& image, const MapBox& box) {
  int y = static_cast<int>(box.top / 15);
  for (float along : {0.25f, 0.5f, 0.75f})
    for (int dy = -2; dy <= 2; ++dy) {
      int x = static_cast<int>((box.left + along * box.width) / 15);
      if (QColor(image.pixel(x, std::clamp(y + dy, 0, image.height() - 1))).lightness() < 160) return true;
    }
  return false;
}

TEST(QtAuthorTools, TheMapsBoxesLieWhereTheClicksFindThem) {
  AuthorTools a;
  a.Menu("mnuquestmap");
  QMainWindow* window = a.windows.WindowOf(a.s.FindForm("FrmQuestMap"));
  ASSERT_NE(window, nullptr);
  ASSERT_TRUE(window->isVisible());
  EXPECT_EQ(window->windowTitle(), "Quest Map");
  const AuthorToolsModule& m = a.t.program.Module<AuthorToolsModule>();

  // The picture's own pixels: the top edge of every page's box is drawn
  // where the box says.
  QImage picture(QString::fromStdString(PictureBox(a.s, "FrmQuestMap", "MapView").Picture().host));
  ASSERT_FALSE(picture.isNull());
  EXPECT_EQ(picture.width() * 15, m.map.width);
  for (const MapBox& box : m.map.boxes)
    EXPECT_TRUE(OutlineAlongTop(picture, box)) << m.mapPages[box.page];

  // Real mouse clicks at the window's own zoom land on the page drawn there.
  QWidget* view = a.Widget("FrmQuestMap", "MapView");
  ASSERT_NE(view, nullptr);
  double pixels = a.windows.Zoom(a.s.FindForm("FrmQuestMap")) * m.zoom / 15;
  for (const MapBox& box : m.map.boxes) {
    QPoint centre(static_cast<int>((box.left + box.width / 2) * pixels), static_cast<int>((box.top + box.height / 2) * pixels));
    QTest::mouseClick(view, Qt::LeftButton, {}, centre);
    EXPECT_EQ(a.SelectedPage(), m.mapPages[box.page]);
  }
  testing::SaveScreenshot(window, "author-tools-map");

  // Zoomed in, the picture is larger than its view, which scrolls.
  for (int i = 0; i < 3; ++i) QTest::mouseClick(a.Widget("FrmQuestMap", "cmdZoomIn"), Qt::LeftButton);
  auto* scroll = qobject_cast<QScrollArea*>(a.Widget("FrmQuestMap", "MapFrame"));
  ASSERT_NE(scroll, nullptr);
  EXPECT_GT(view->height(), scroll->viewport()->height());
  EXPECT_GT(scroll->verticalScrollBar()->maximum(), 0);
  QCoreApplication::processEvents();  // the scroll bars come with the next layout
  EXPECT_TRUE(scroll->verticalScrollBar()->isVisible());
  const MapBox& last = m.map.boxes.back();
  int y = static_cast<int>((last.top + last.height / 2) * a.windows.Zoom(a.s.FindForm("FrmQuestMap")) * m.zoom / 15);
  scroll->verticalScrollBar()->setValue(y - scroll->viewport()->height() / 2);
  testing::SaveScreenshot(window, "author-tools-map-zoomed");
  QTest::mouseClick(view, Qt::LeftButton, {},
                    QPoint(static_cast<int>((last.left + last.width / 2) * a.windows.Zoom(a.s.FindForm("FrmQuestMap")) * m.zoom / 15), y));
  EXPECT_EQ(a.SelectedPage(), m.mapPages[last.page]);
}

TEST(QtAuthorTools, TheMenuStandsBesideTheEditorsOwn) {
  AuthorTools a;
  QMainWindow* editor = a.windows.WindowOf(a.s.FindForm("createquest"));
  ASSERT_NE(editor, nullptr);
  QStringList menus;
  QMenu* tools = nullptr;
  for (QAction* action : editor->menuBar()->actions()) {
    menus << action->text();
    if (action->text() == "&Author Tools") tools = action->menu();
  }
  EXPECT_EQ(menus, QStringList({"&File", "&Compile", "&Author Tools"}));
  ASSERT_NE(tools, nullptr);
  QStringList items;
  for (QAction* action : tools->actions()) items << action->text();
  EXPECT_EQ(items, QStringList({"Quest &Map", "&Check the Quest", "&Explore the Quest", "&Test Play from the Selected Page",
                                "Turn Players' &Undo On or Off"}));
  // The menu open over the editor, for a picture.
  editor->show();
  tools->popup(editor->mapToGlobal(editor->menuBar()->actionGeometry(tools->menuAction()).bottomLeft()));
  QPixmap shot = editor->grab();
  QPainter(&shot).drawPixmap(editor->menuBar()->actionGeometry(tools->menuAction()).bottomLeft(), tools->grab());
  // The menu bar and the open menu, without the page below.
  int bottom = editor->menuBar()->height() + tools->height() + 8;
  shot.copy(0, 0, shot.width(), std::min(bottom, shot.height())).save(testing::ScreenshotsDir() + "/author-tools-menu.png");
  tools->hide();
}

TEST(QtAuthorTools, TheFindingsAndTheReportInTheirWindows) {
  AuthorTools a;
  a.Menu("mnucheckquest");
  QMainWindow* findings = a.windows.WindowOf(a.s.FindForm("FrmFindings"));
  ASSERT_TRUE(findings && findings->isVisible());
  auto* list = qobject_cast<QListWidget*>(a.Widget("FrmFindings", "lstFindings"));
  ASSERT_EQ(list->count(), 3);
  // Chosen with the mouse, an entry selects its page.
  QRect entry = list->visualItemRect(list->item(1));
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, entry.center());
  EXPECT_EQ(a.SelectedPage(), "8");
  testing::SaveScreenshot(findings, "author-tools-findings");

  a.Menu("mnuexplorequest");
  QMainWindow* report = a.windows.WindowOf(a.s.FindForm("FrmExplore"));
  ASSERT_TRUE(report && report->isVisible());
  auto* text = qobject_cast<QPlainTextEdit*>(a.Widget("FrmExplore", "txtReport"));
  ASSERT_NE(text, nullptr);
  EXPECT_TRUE(text->isReadOnly());
  EXPECT_TRUE(text->toPlainText().startsWith("States: "));
  EXPECT_TRUE(text->toPlainText().contains("\nDead end at page 8: score -2\n"));
  testing::SaveScreenshot(report, "author-tools-report");
}

}  // namespace
}  // namespace fw
