// The map laid out and drawn by Graphviz; the graph itself is in quest_map.cpp.
#include "editor/quest_map.h"

#include <graphviz/cgraph.h>
#include <graphviz/gvc.h>

#include <memory>

namespace fw {
namespace {

// One Graphviz context for the whole process: its text-layout plugin keeps
// font data from one context to the next, so a context freed leaves the next
// one reading freed memory. It holds no state of ours, only loaded plugins.
GVC_t* Graphviz() {
  static GVC_t* const context = gvContext();
  return context;
}

}  // namespace

bool RenderQuestMap(const QuestGraph& graph, std::string_view title, const std::string& format, std::string& out,
                    std::string& error) {
  std::string dot = QuestDot(graph, title);
  GVC_t* gvc = Graphviz();
  if (!gvc) {
    error = "Graphviz could not start";
    return false;
  }
  std::unique_ptr<Agraph_t, int (*)(Agraph_t*)> g(agmemread(dot.c_str()), agclose);
  if (!g) {
    error = "Graphviz could not read the quest's graph";
    return false;
  }
  if (gvLayout(gvc, g.get(), MapEngine(graph)) != 0) {
    error = "Graphviz could not lay out the map";
    return false;
  }
  char* data = nullptr;
  unsigned int length = 0;
  int rc = gvRenderData(gvc, g.get(), format.c_str(), &data, &length);
  if (rc == 0 && data) out.assign(data, length);
  if (data) gvFreeRenderData(data);
  gvFreeLayout(gvc, g.get());
  if (rc != 0) {
    error = "Graphviz cannot write the format " + format;
    return false;
  }
  return true;
}

}  // namespace fw

namespace fw {
namespace {

// The pixel size a PNG's header gives: width and height at bytes 16 to 23.
bool PngSize(const std::string& png, int& width, int& height) {
  if (png.size() < 24 || png.compare(1, 3, "PNG") != 0) return false;
  auto word = [&](std::size_t at) {
    return static_cast<int>((static_cast<unsigned char>(png[at]) << 24) | (static_cast<unsigned char>(png[at + 1]) << 16) |
                            (static_cast<unsigned char>(png[at + 2]) << 8) | static_cast<unsigned char>(png[at + 3]));
  };
  width = word(16);
  height = word(20);
  return width > 0 && height > 0;
}

constexpr double kPadPoints = 7.2;  // the margin round the drawing: "pad" of 0.1 inch
constexpr float kTwipsPerPixel = 15;  // at 96 dots an inch

// Each page node's box, from the layout's points (y upwards) to twips on the
// picture (y downwards). The picture may have been scaled to fit a bitmap's
// largest size, so the scale comes from the picture's own size.
std::vector<MapBox> Boxes(Agraph_t* g, int pngWidth, int pngHeight) {
  boxf bb = GD_bb(g);
  double sx = pngWidth / (bb.UR.x - bb.LL.x + 2 * kPadPoints);
  double sy = pngHeight / (bb.UR.y - bb.LL.y + 2 * kPadPoints);
  std::vector<MapBox> boxes;
  for (Agnode_t* n = agfstnode(g); n; n = agnxtnode(g, n)) {
    std::string_view name = agnameof(n);
    if (name.size() < 2 || name[0] != 'p' || name.find_first_not_of("0123456789", 1) != std::string_view::npos)
      continue;  // a missing page's node
    double w = ND_width(n) * 72, h = ND_height(n) * 72;
    double left = ND_coord(n).x - w / 2 - bb.LL.x + kPadPoints;
    double top = bb.UR.y - (ND_coord(n).y + h / 2) + kPadPoints;
    boxes.push_back({std::stoi(std::string(name.substr(1))), static_cast<float>(left * sx * kTwipsPerPixel),
                     static_cast<float>(top * sy * kTwipsPerPixel), static_cast<float>(w * sx * kTwipsPerPixel),
                     static_cast<float>(h * sy * kTwipsPerPixel)});
  }
  return boxes;
}

}  // namespace

bool RenderQuestMapPicture(const QuestGraph& graph, std::string_view title, MapPicture& out, std::string& error) {
  GVC_t* gvc = Graphviz();
  std::unique_ptr<Agraph_t, int (*)(Agraph_t*)> g(agmemread(QuestDot(graph, title).c_str()), agclose);
  if (!gvc || !g) {
    error = "Graphviz could not read the quest's graph";
    return false;
  }
  agsafeset(g.get(), const_cast<char*>("dpi"), const_cast<char*>("96"), const_cast<char*>(""));
  agsafeset(g.get(), const_cast<char*>("pad"), const_cast<char*>("0.1"), const_cast<char*>(""));
  if (gvLayout(gvc, g.get(), MapEngine(graph)) != 0) {
    error = "Graphviz could not lay out the map";
    return false;
  }
  char* data = nullptr;
  unsigned int length = 0;
  int rc = gvRenderData(gvc, g.get(), "png", &data, &length);
  if (rc == 0 && data) out.png.assign(data, length);
  if (data) gvFreeRenderData(data);
  int width = 0, height = 0;
  if (rc == 0 && PngSize(out.png, width, height)) out.boxes = Boxes(g.get(), width, height);
  gvFreeLayout(gvc, g.get());
  if (rc != 0 || width == 0) {
    error = "Graphviz cannot draw the map as a picture";
    return false;
  }
  out.width = width * kTwipsPerPixel;
  out.height = height * kTwipsPerPixel;
  return true;
}

}  // namespace fw
