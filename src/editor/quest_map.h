#pragma once
#include <string>
#include <string_view>

#include "editor/quest_graph.h"

namespace fw {

// The quest as a Graphviz graph: pages as boxes with their location, options
// as arrows labelled with their text and items, a battle's three exits,
// dead ends, endings and unreachable pages marked. Graphviz lays it out.

// The graph in the DOT language, before layout (UTF-8).
std::string QuestDot(const QuestGraph& graph, std::string_view title);

// The laid-out map in one of Graphviz's output formats ("svg", "dot", "png",
// "pdf"); false with `error` set when Graphviz cannot make it.
bool RenderQuestMap(const QuestGraph& graph, std::string_view title, const std::string& format,
                    std::string& out, std::string& error);

}  // namespace fw
