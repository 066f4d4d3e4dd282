#include "platform/graphviz_layout.h"

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

// Every node where the layout put it.
std::vector<LaidOutNode> NodesOf(Agraph_t* g) {
  std::vector<LaidOutNode> nodes;
  for (Agnode_t* n = agfstnode(g); n; n = agnxtnode(g, n))
    nodes.push_back({agnameof(n), ND_coord(n).x, ND_coord(n).y, ND_width(n) * 72, ND_height(n) * 72});
  return nodes;
}

}  // namespace

bool GraphvizLayout::Draw(const std::string& dot, const std::string& engine, const std::string& format,
                          GraphDrawing& out, std::string& error) {
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
  if (gvLayout(gvc, g.get(), engine.c_str()) != 0) {
    error = "Graphviz could not lay out the map";
    return false;
  }
  char* data = nullptr;
  unsigned int length = 0;
  int rc = gvRenderData(gvc, g.get(), format.c_str(), &data, &length);
  if (rc == 0 && data) out.bytes.assign(data, length);
  if (data) gvFreeRenderData(data);
  boxf bb = GD_bb(g.get());
  out.left = bb.LL.x, out.bottom = bb.LL.y, out.right = bb.UR.x, out.top = bb.UR.y;
  out.nodes = NodesOf(g.get());
  gvFreeLayout(gvc, g.get());
  if (rc != 0) {
    error = "Graphviz cannot write the format " + format;
    return false;
  }
  return true;
}

}  // namespace fw
