// Graphviz as a module of its own, which the program loads only to draw a
// quest map (`map`, the editor's Quest Map): Graphviz, its plugins and the
// libraries they bring then cost nothing to a start that plays, reads a key
// or checks a quest. The program finds these entry points by name; the first
// gives the version the module was built as.
#include "platform/graphviz_layout.h"

extern "C" {

__attribute__((visibility("default"))) const char* fablewright_map_build() { return FABLEWRIGHT_VERSION; }

// A new graph layout; the caller owns it.
__attribute__((visibility("default"))) fw::GraphLayout* fablewright_make_graph_layout() {
  return new fw::GraphvizLayout();
}

}  // extern "C"
