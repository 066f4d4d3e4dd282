#pragma once
#include <string>
#include <string_view>

namespace fw {

class Program;

// The Game menu's entries as commands a terminal or a script types: one
// table, so that every binding offers the same ones and refuses them alike.
struct GameCommand {
  const char* word;     // what is typed
  const char* control;  // the menu item of FrmGame it clicks
  const char* help;     // one line of help
  // The item's file dialog, which a file typed after the word answers; null for none.
  const char* dialog = nullptr;
};

inline constexpr GameCommand kGameCommands[] = {
    {"undo", "mnuundo", "take back the last step"},
    {"restart", "mnurestart", "start the quest again from its first page"},
    {"continue", "mnucontinue", "go on with the last game, as it was saved automatically"},
    {"transcript", "mnutranscript", "write the whole transcript into a text file", "transcriptfile"},
};

// The command of that word, or null.
const GameCommand* FindGameCommand(std::string_view word);

// Does the command as its menu item does: "" when done, else why it cannot
// be done now, as a sentence.
std::string RunGameCommand(Program& p, const GameCommand& command, std::string_view file = {});

}  // namespace fw
