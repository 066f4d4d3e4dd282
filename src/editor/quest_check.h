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

// A game folder's game.dat as the packaged game reads it, with findings on
// the sections Image and loaddat: a file it names outside the folder, which
// the game ignores (a QuestFile so makes the program start as the full
// system), a blank or missing QuestFile. `folder` is a program path.
struct GameDatCheck {
  std::vector<Finding> findings;
  std::string questName;  // QuestFile as game.dat writes it
  std::string quest;      // its program path, "" when the game opens no quest there
};
GameDatCheck CheckGameDat(Program& p, std::string_view folder);

bool HasError(const std::vector<Finding>& findings);

// The findings of one file, as the author named it (UTF-8).
struct FileFindings {
  std::string file;
  std::vector<Finding> findings;
};

// One finding a line, "QUEST:PAGE: level: message", in UTF-8.
std::string FindingsText(std::string_view quest, const std::vector<Finding>& findings);
// The findings as a JSON array of {quest, page, level, message}, in UTF-8;
// of several files, one array of them all.
std::string FindingsJson(std::string_view quest, const std::vector<Finding>& findings);
std::string FindingsJson(const std::vector<FileFindings>& files);

}  // namespace fw
