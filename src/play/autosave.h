#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace fw {

class Program;

// The autosave: one ordinary saved game a quest file, in the per-user saves
// folder, kept up to date at every page shown, and the note of the last one
// written, which Continue opens.

// The note of the last autosave, in the per-user folder, and its keys.
inline constexpr const char* kContinueFile = "continue.ini";
inline constexpr const char* kContinueSection = "Last Game";

// The autosave of a quest (a program path): "NAME (autosave XXXXXXXX).sav"
// in the saves folder, NAME the quest file's name without extension and
// XXXXXXXX a hash of its full path, so that two quests of one name in two
// folders keep two autosaves. A host path.
std::string AutosavePath(Program& p, std::string_view quest);

// Called at every page shown: the autosave is written once the event that
// showed the page is over (a fight's outcome may show another page at once),
// and only when the game on screen differs from what it last wrote.
void ScheduleAutosave(Program& p);

// Writes the autosave of the open quest now, if it changed.
void Autosave(Program& p);

// The quest and the saved game of the last autosave, as program paths;
// nullopt when there is none or its files are gone.
struct LastGame {
  std::string quest, save;
};
std::optional<LastGame> LastAutosave(Program& p);

namespace frmgame {

// Game / Continue: reopens the quest of the last autosave and loads it by
// the full load of Load Saved Game.
void mnucontinue_Click(Program& p);

}  // namespace frmgame

}  // namespace fw
