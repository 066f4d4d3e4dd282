// The quest map window: the working file's map as Graphviz draws it, in a
// view that scrolls and zooms; a click on a page's box selects that page in
// the editor.
#include <algorithm>
#include <cmath>

#include "editor/author_menu.h"
#include "editor/editor_state.h"
#include "forms/codepage.h"
#include "forms/controls.h"
#include "forms/program.h"
#include "store/program_store.h"

namespace fw {
namespace {

constexpr const char* kForm = "FrmQuestMap";
// The picture the map is drawn into, in the per-user folder.
constexpr const char* kMapPicture = "questmap.png";

constexpr ControlDecl kControls[] = {
    {.name = "cmdZoomOut", .kind = Kind::CommandButton, .left = 120, .top = 60, .width = 1095, .height = 375,
     .caption = "Zoom Out"},
    {.name = "cmdZoomIn", .kind = Kind::CommandButton, .left = 1320, .top = 60, .width = 1095, .height = 375,
     .caption = "Zoom In"},
    {.name = "cmdFit", .kind = Kind::CommandButton, .left = 2520, .top = 60, .width = 855, .height = 375,
     .caption = "Fit", .toolTip = "Shrink the map to the window"},
    {.name = "cmdRedraw", .kind = Kind::CommandButton, .left = 3480, .top = 60, .width = 1095, .height = 375,
     .caption = "Redraw", .toolTip = "Draw the map again from the pages as they are now"},
    {.name = "lblZoom", .kind = Kind::Label, .left = 4680, .top = 120, .width = 855, .height = 300,
     .caption = "100%"},
    {.name = "lblMapStatus", .kind = Kind::Label, .left = 5640, .top = 120, .width = 3855, .height = 300,
     .caption = "Click a page to select it in the editor."},
    {.name = "MapFrame", .kind = Kind::PictureBox, .left = 0, .top = 540, .width = 9600, .height = 6660,
     .look = {.backColor = Rgb(255, 255, 255), .scrollBar = true}},
    {.name = "MapView", .kind = Kind::PictureBox, .parent = "MapFrame", .look = {.handCursor = true}},
};

// The zooms the buttons step through; Fit may give one between them.
constexpr double kZooms[] = {0.25, 0.5, 0.75, 1, 1.5, 2, 3};
// Fit shrinks a large map no further: smaller, no box can be told apart.
constexpr double kSmallestFit = 0.05;

PictureBox MapView(Program& p) { return PictureBox(p.surface(), kForm, "MapView"); }
Label Status(Program& p) { return Label(p.surface(), kForm, "lblMapStatus"); }

void ApplyZoom(Program& p) {
  AuthorToolsModule& m = p.Module<AuthorToolsModule>();
  MapView(p).SetWidth(static_cast<float>(std::floor(m.map.width * m.zoom)));
  MapView(p).SetHeight(static_cast<float>(std::floor(m.map.height * m.zoom)));
  Label(p.surface(), kForm, "lblZoom").SetCaption(std::to_string(static_cast<int>(std::lround(m.zoom * 100))) + "%");
}

// The zoom at which the whole map shows in the view, no larger than its own size.
double FittingZoom(Program& p) {
  const MapPicture& map = p.Module<AuthorToolsModule>().map;
  if (map.width <= 0 || map.height <= 0) return 1;
  PictureBox frame(p.surface(), kForm, "MapFrame");
  constexpr float kEdge = 60;  // the view's frame
  double fit = std::min((frame.Width() - kEdge) / map.width, (frame.Height() - kEdge) / map.height);
  return std::clamp(fit, kSmallestFit, 1.0);
}

// The working file's title for the map, else the name of the quest file it
// was loaded from or saved to.
std::string MapTitle(Program& p) {
  std::string title = ReadINI(p, kWorkingFile, "Story Info", "Title");
  if (!title.empty()) return title;
  std::string file = EditorState(p).filepath.Caption();
  file.erase(0, file.find_last_of("/\\") + 1);
  return file.empty() ? "Untitled quest" : file;
}

void cmdZoomIn_Click(Program& p) {
  AuthorToolsModule& m = p.Module<AuthorToolsModule>();
  auto next = std::upper_bound(std::begin(kZooms), std::end(kZooms), m.zoom + 1e-9);
  if (next == std::end(kZooms)) return;
  m.zoom = *next;
  ApplyZoom(p);
}

void cmdZoomOut_Click(Program& p) {
  AuthorToolsModule& m = p.Module<AuthorToolsModule>();
  auto next = std::lower_bound(std::begin(kZooms), std::end(kZooms), m.zoom - 1e-9);
  if (next == std::begin(kZooms)) return;
  m.zoom = *(next - 1);
  ApplyZoom(p);
}

void cmdFit_Click(Program& p) {
  p.Module<AuthorToolsModule>().zoom = FittingZoom(p);
  ApplyZoom(p);
}

void cmdRedraw_Click(Program& p) { DrawQuestMap(p); }

void MapView_Click(Program& p) {
  AuthorToolsModule& m = p.Module<AuthorToolsModule>();
  PictureBox view = MapView(p);
  if (view.ClickX() < 0 || m.zoom <= 0) return;
  int page = PageAt(m.map, static_cast<float>(view.ClickX() / m.zoom), static_cast<float>(view.ClickY() / m.zoom));
  if (page < 0 || page >= static_cast<int>(m.mapPages.size())) return Status(p).SetCaption("No page there.");
  const std::string& name = m.mapPages[page];
  Status(p).SetCaption(SelectEditorPage(p, name) ? "Page " + name + " is selected in the editor."
                                                 : "Page " + name + " has no entry in the editor's page list.");
}

constexpr HandlerDecl kHandlers[] = {
    {"cmdZoomIn", Event::Click, cmdZoomIn_Click}, {"cmdZoomOut", Event::Click, cmdZoomOut_Click},
    {"cmdFit", Event::Click, cmdFit_Click},       {"cmdRedraw", Event::Click, cmdRedraw_Click},
    {"MapView", Event::Click, MapView_Click},
};

constexpr FormDecl kTable{
    .name = kForm, .caption = "Quest Map", .width = 9600, .height = 7200, .controls = kControls, .noMaximize = true,
    .owner = "createquest"};

}  // namespace

const FormDef& FrmQuestMapForm() {
  static const FormDef form{&kTable, kHandlers};
  return form;
}

void DrawQuestMap(Program& p) {
  AuthorToolsModule& m = p.Module<AuthorToolsModule>();
  std::shared_ptr<const ProfileImage> image = ReadINIImage(p, kWorkingFile);
  if (!image) return Status(p).SetCaption("The working file cannot be read.");
  QuestGraph graph = BuildQuestGraph(image);
  MapPicture map;
  std::string error;
  GraphLayout* layout = p.services().graphs;
  if (!layout) return Status(p).SetCaption("Graphviz could not start");
  if (!RenderQuestMapPicture(*layout, graph, MapTitle(p), map, error)) return Status(p).SetCaption(error);
  if (!WriteUserFile(p, kMapPicture, map.png)) return Status(p).SetCaption("The map's picture cannot be written.");
  map.png.clear();
  bool first = m.map.width <= 0;
  m.map = std::move(map);
  m.mapPages.clear();
  for (const PageNode& page : graph.pages) m.mapPages.push_back(page.name);
  // A map opens whole in the window; a redrawn one keeps the zoom it had.
  if (first) m.zoom = FittingZoom(p);
  ApplyZoom(p);
  try {
    MapView(p).SetPicture(p.LoadPicture(Cp1252FromUtf8(p.UserDir() + "/" + kMapPicture)));
  } catch (const Failure&) {
    return Status(p).SetCaption("The map's picture cannot be read.");
  }
  Status(p).SetCaption("Click a page to select it in the editor.");
}

}  // namespace fw
