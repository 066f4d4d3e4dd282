#include "editor/quest_map.h"

#include <set>

#include "forms/codepage.h"

namespace fw {
namespace {

// A text inside a quoted DOT string: quotes and backslashes escaped, long
// texts cut. A control character (a code 0 would end the text Graphviz reads,
// and XML, so SVG, has no place for the others) shows as a blank.
std::string Escaped(std::string_view cp1252, std::size_t limit = 40) {
  std::string text(cp1252.substr(0, limit));
  if (cp1252.size() > limit) text += "\x85";  // an ellipsis in Windows-1252
  std::string out;
  for (char c : Utf8FromCp1252(text)) {
    if (c == '"' || c == '\\') out += '\\';
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
    out += c;
  }
  return out;
}

std::string NodeId(int index) { return "p" + std::to_string(index); }

std::string PageNodeLine(const QuestGraph& g, int i) {
  const PageNode& page = g.pages[i];
  std::string label = "page " + Escaped(page.name);
  if (!page.location.empty()) label += "\\n" + Escaped(page.location);
  if (page.battle) label += "\\nbattle: " + Escaped(page.monster.empty() ? "(no name)" : page.monster);
  std::string attrs = "label=\"" + label + "\"";
  if (i == g.first) attrs += ", penwidth=3";
  if (page.battle) attrs += ", shape=box3d";
  if (!page.reachable) attrs += ", style=\"dashed,filled\", fillcolor=\"#eeeeee\", fontcolor=\"#777777\"";
  else if (page.deadEnd) attrs += ", style=filled, fillcolor=\"#f4b4b4\", xlabel=\"dead end\"";
  else if (page.ending) attrs += ", style=filled, fillcolor=\"#c8e6c0\", peripheries=2";
  return "  " + NodeId(i) + " [" + attrs + "];\n";
}

std::string OptionLabel(const OptionLink& o) {
  std::string label = Escaped(o.text.empty() ? "(no text)" : o.text, 30);
  if (o.needsItem) label += "\\nneeds " + Escaped(o.item);
  if (o.gives) label += "\\ngives " + Escaped(o.item);
  return label;
}

// A destination that names no page gets a node of its own, so the broken
// arrow shows where it points.
std::string Target(const std::string& name, int target, std::set<std::string>& missing, std::string& nodes) {
  if (target >= 0) return NodeId(target);
  std::string id = "\"missing:" + Escaped(name, 200) + "\"";
  if (missing.insert(id).second)
    nodes += "  " + id + " [label=\"no page " + (name.empty() ? std::string("(blank)") : Escaped(name)) +
             "\", shape=octagon, style=filled, fillcolor=\"#e05050\", fontcolor=white];\n";
  return id;
}

// Graphviz's layered layout with curved arrows reads best, but its cost grows
// with every arrow that crosses many layers: a quest of 60 pages whose every
// page leads back to page 1 takes 20 seconds, one of 100 minutes. Past a
// hundred-odd arrows the layers stay, with straight arrows and a bounded
// placement (under a second at 100 such pages, 400 arrows); past that the
// scalable force-directed layout takes over (a second or two at 1,000 pages).
enum class Layout { Curved, Straight, Scattered };

constexpr std::size_t kCurvedArrows = 120;
constexpr std::size_t kLayeredArrows = 450;

// An option the map draws: one with a text or a destination.
bool Drawn(const OptionLink& o) { return !o.text.empty() || !o.destination.empty(); }

// The arrows the map draws: its options and the battles' open exits.
std::size_t ArrowCount(const QuestGraph& g) {
  std::size_t arrows = 0;
  for (const PageNode& page : g.pages) {
    for (const OptionLink& o : page.options) arrows += Drawn(o);
    for (const BattleExit& e : page.exits) arrows += e.open;
  }
  return arrows;
}

Layout LayoutOf(const QuestGraph& g) {
  std::size_t arrows = ArrowCount(g);
  if (arrows > kLayeredArrows) return Layout::Scattered;
  return arrows > kCurvedArrows ? Layout::Straight : Layout::Curved;
}

// The graph attributes and the Graphviz engine of each layout.
const char* LayoutAttributes(Layout layout) {
  switch (layout) {
    case Layout::Curved: return "  rankdir=TB;\n";
    case Layout::Straight: return "  rankdir=TB;\n  splines=line;\n  nslimit=0.5;\n  mclimit=0.5;\n";
    case Layout::Scattered: break;
  }
  return "  overlap=prism;\n";
}

const char* Engine(const QuestGraph& g) { return LayoutOf(g) == Layout::Scattered ? "sfdp" : "dot"; }

}  // namespace

std::string QuestDot(const QuestGraph& g, std::string_view title) {
  std::string nodes, edges;
  std::set<std::string> missing;
  for (int i = 0; i < static_cast<int>(g.pages.size()); ++i) {
    nodes += PageNodeLine(g, i);
    const PageNode& page = g.pages[i];
    for (const OptionLink& o : page.options) {
      if (!Drawn(o)) continue;
      std::string to = Target(o.destination, o.target, missing, nodes);
      std::string style = o.canShow ? "" : ", style=dotted, color=\"#c03030\"";
      edges += "  " + NodeId(i) + " -> " + to + " [label=\"" + OptionLabel(o) + "\"" + style + "];\n";
    }
    for (const BattleExit& e : page.exits) {
      if (!e.open) continue;
      std::string_view key = e.key;
      const char* name = key == "BattleWin" ? "win" : key == "BattleLose" ? "loss" : "escape";
      const char* color = key == "BattleWin" ? "#2a8a2a" : key == "BattleLose" ? "#b02020" : "#806020";
      edges += "  " + NodeId(i) + " -> " + Target(e.page, e.target, missing, nodes) + " [label=\"" + name +
               "\", style=bold, color=\"" + color + "\", fontcolor=\"" + color + "\"];\n";
    }
  }
  std::string layout = LayoutAttributes(LayoutOf(g));
  return "digraph quest {\n  label=\"" + Escaped(title, 200) + "\";\n  labelloc=t;\n  fontname=\"Helvetica\";\n" +
         layout + "  node [shape=box, fontname=\"Helvetica\"];\n"
         "  edge [fontname=\"Helvetica\", fontsize=10];\n" + nodes + edges + "}\n";
}

bool RenderQuestMap(GraphLayout& layout, const QuestGraph& graph, std::string_view title, const std::string& format,
                    std::string& out, std::string& error) {
  GraphDrawing drawing;
  if (!layout.Draw(QuestDot(graph, title), Engine(graph), format, drawing, error)) return false;
  out = std::move(drawing.bytes);
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
std::vector<MapBox> Boxes(const GraphDrawing& drawing, int pngWidth, int pngHeight) {
  double sx = pngWidth / (drawing.right - drawing.left + 2 * kPadPoints);
  double sy = pngHeight / (drawing.top - drawing.bottom + 2 * kPadPoints);
  std::vector<MapBox> boxes;
  for (const LaidOutNode& n : drawing.nodes) {
    std::string_view name = n.name;
    if (name.size() < 2 || name[0] != 'p' || name.find_first_not_of("0123456789", 1) != std::string_view::npos)
      continue;  // a missing page's node
    double left = n.x - n.width / 2 - drawing.left + kPadPoints;
    double top = drawing.top - (n.y + n.height / 2) + kPadPoints;
    boxes.push_back({std::stoi(std::string(name.substr(1))), static_cast<float>(left * sx * kTwipsPerPixel),
                     static_cast<float>(top * sy * kTwipsPerPixel), static_cast<float>(n.width * sx * kTwipsPerPixel),
                     static_cast<float>(n.height * sy * kTwipsPerPixel)});
  }
  return boxes;
}

}  // namespace

bool RenderQuestMapPicture(GraphLayout& layout, const QuestGraph& graph, std::string_view title, MapPicture& out,
                           std::string& error) {
  // At 96 dots an inch, with a margin of a tenth of an inch round it.
  std::string dot = QuestDot(graph, title);
  dot.insert(dot.find('\n') + 1, "  dpi=96;\n  pad=0.1;\n");
  GraphDrawing drawing;
  if (!layout.Draw(dot, Engine(graph), "png", drawing, error)) return false;
  int width = 0, height = 0;
  if (!PngSize(drawing.bytes, width, height)) {
    error = "Graphviz cannot draw the map as a picture";
    return false;
  }
  out.png = std::move(drawing.bytes);
  out.boxes = Boxes(drawing, width, height);
  out.width = width * kTwipsPerPixel;
  out.height = height * kTwipsPerPixel;
  return true;
}

int PageAt(const MapPicture& map, float x, float y) {
  for (const MapBox& b : map.boxes)
    if (x >= b.left && x < b.left + b.width && y >= b.top && y < b.top + b.height) return b.page;
  return -1;
}

}  // namespace fw
