#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "editor/quest_graph.h"

namespace fw {

// The quest as a Graphviz graph: pages as boxes with their location, options
// as arrows labelled with their text and items, a battle's three exits,
// dead ends, endings and unreachable pages marked. Graphviz lays it out.

// The graph in the DOT language, before layout (UTF-8).
std::string QuestDot(const QuestGraph& graph, std::string_view title);

// The Graphviz layout engine that suits the graph's size.
const char* MapEngine(const QuestGraph& graph);

// The laid-out map in one of Graphviz's output formats ("svg", "dot", "png",
// "pdf"); false with `error` set when Graphviz cannot make it.
bool RenderQuestMap(const QuestGraph& graph, std::string_view title, const std::string& format,
                    std::string& out, std::string& error);

// A page's box on a rendered map picture, in twips from the picture's top
// left corner at its own size (a pixel of it is 15 twips).
struct MapBox {
  int page = -1;  // index into the graph's pages
  float left = 0, top = 0, width = 0, height = 0;
};

// A map rendered as a PNG picture, and where each page's box lies on it.
struct MapPicture {
  std::string png;
  float width = 0, height = 0;  // twips
  std::vector<MapBox> boxes;
};

// Lays out and renders the map as a PNG at 96 dots an inch; the boxes come
// from Graphviz's own positions. False with `error` set when it cannot.
bool RenderQuestMapPicture(const QuestGraph& graph, std::string_view title, MapPicture& out, std::string& error);

// The page whose box holds the point (twips on the picture), -1 for none.
int PageAt(const MapPicture& map, float x, float y);

}  // namespace fw
