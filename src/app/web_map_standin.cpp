#include "app/web_assembly.h"

namespace fw {

// The web build has no Graphviz: the editor's Quest Map says so in its
// status line, as it says any failure to draw.
bool NoGraphLayout::Draw(const std::string&, const std::string&, const std::string&, GraphDrawing&,
                         std::string& error) {
  error = "The quest map needs Graphviz, which this version lacks";
  return false;
}

}  // namespace fw
