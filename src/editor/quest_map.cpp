#include "editor/quest_map.h"

#include <memory>
#include <set>

#include "forms/codepage.h"

namespace fw {
namespace {

// A text inside a DOT string: quotes and backslashes escaped, long texts cut.
std::string Escaped(std::string_view cp1252, std::size_t limit = 40) {
  std::string text(cp1252.substr(0, limit));
  if (cp1252.size() > limit) text += "\x85";  // an ellipsis in Windows-1252
  std::string out;
  for (char c : Utf8FromCp1252(text)) {
    if (c == '"' || c == '\\') out += '\\';
    if (c == '\r' || c == '\n') c = ' ';
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

const char* MapEngine(const QuestGraph& g) { return LayoutOf(g) == Layout::Scattered ? "sfdp" : "dot"; }

int PageAt(const MapPicture& map, float x, float y) {
  for (const MapBox& b : map.boxes)
    if (x >= b.left && x < b.left + b.width && y >= b.top && y < b.top + b.height) return b.page;
  return -1;
}

}  // namespace fw
