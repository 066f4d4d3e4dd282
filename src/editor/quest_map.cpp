#include "editor/quest_map.h"

#include <graphviz/cgraph.h>
#include <graphviz/gvc.h>

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

// Graphviz's layered layout reads best, but takes minutes past a few hundred
// pages with ways back and forth; the scalable force-directed one takes a
// second or two for a thousand.
constexpr std::size_t kLayeredPages = 200;

bool Large(const QuestGraph& g) { return g.pages.size() > kLayeredPages; }

// One Graphviz context for the whole process: its text-layout plugin keeps
// font data from one context to the next, so a context freed leaves the next
// one reading freed memory. It holds no state of ours, only loaded plugins.
GVC_t* Graphviz() {
  static GVC_t* const context = gvContext();
  return context;
}

}  // namespace

std::string QuestDot(const QuestGraph& g, std::string_view title) {
  std::string nodes, edges;
  std::set<std::string> missing;
  for (int i = 0; i < static_cast<int>(g.pages.size()); ++i) {
    nodes += PageNodeLine(g, i);
    const PageNode& page = g.pages[i];
    for (const OptionLink& o : page.options) {
      if (o.text.empty() && o.destination.empty()) continue;
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
  std::string layout = Large(g) ? "  overlap=prism;\n" : "  rankdir=TB;\n";
  return "digraph quest {\n  label=\"" + Escaped(title, 200) + "\";\n  labelloc=t;\n  fontname=\"Helvetica\";\n" +
         layout + "  node [shape=box, fontname=\"Helvetica\"];\n"
         "  edge [fontname=\"Helvetica\", fontsize=10];\n" + nodes + edges + "}\n";
}

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
  if (gvLayout(gvc, g.get(), Large(graph) ? "sfdp" : "dot") != 0) {
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
