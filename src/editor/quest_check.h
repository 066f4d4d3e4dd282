#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "editor/quest_graph.h"

namespace fw {

class Program;

// One thing an author should look at: on which page (section) and how bad.
// An error is a quest that does not play as written; a warning one that
// plays, but maybe not as meant.
struct Finding {
  enum class Level { Error, Warning };
  std::string page;  // section name, Windows-1252
  Level level = Level::Warning;
  std::string message;  // Windows-1252
};

// Checks a quest file by the game's own rules. It reads the file through the
// store and never writes it; media names are looked up as the game looks
// them up, from the quest's folder. nullopt when the file cannot be read.
std::optional<std::vector<Finding>> CheckQuest(Program& p, std::string_view quest);

// The same on a graph already made of the quest, with `folder` the quest's
// folder as a program path.
std::vector<Finding> CheckQuestGraph(Program& p, const QuestGraph& graph, std::string_view folder);

bool HasError(const std::vector<Finding>& findings);

// One finding a line, "QUEST:PAGE: level: message", in UTF-8.
std::string FindingsText(std::string_view quest, const std::vector<Finding>& findings);
// The findings as a JSON array of {quest, page, level, message}, in UTF-8.
std::string FindingsJson(std::string_view quest, const std::vector<Finding>& findings);

}  // namespace fw
