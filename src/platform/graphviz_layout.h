#pragma once
#include "forms/services.h"

namespace fw {

// Graph layout through Graphviz's library. The program loads it only to draw
// a quest map (the module fablewright-map.so); the tests link it directly.
class GraphvizLayout : public GraphLayout {
 public:
  bool Draw(const std::string& dot, const std::string& engine, const std::string& format, GraphDrawing& out,
            std::string& error) override;
};

}  // namespace fw
