// The quest map of the web build, which has no Graphviz to lay it out: the
// editor's Quest Map says so in its status line, as it says any failure.
#include "editor/quest_map.h"

namespace fw {

namespace {
constexpr const char* kNoGraphviz = "The quest map needs Graphviz, which this version lacks";
}

bool RenderQuestMap(const QuestGraph&, std::string_view, const std::string&, std::string&, std::string& error) {
  error = kNoGraphviz;
  return false;
}

bool RenderQuestMapPicture(const QuestGraph&, std::string_view, MapPicture&, std::string& error) {
  error = kNoGraphviz;
  return false;
}

}  // namespace fw
