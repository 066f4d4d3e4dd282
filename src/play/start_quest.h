#pragma once
#include <string_view>

namespace fw {

class Program;

// The four ways into a quest at page 1. They differ in what they reset and in
// how much of the page show they run.
enum class QuestEntry {
  PackagedStart,  // a packaged game, at program start
  StartImage,     // the Start image of a packaged game
  LoadQuestFile,  // File / Load A Quest File
  TmpGame,        // the editor's test play of its working file
};

// Opens the quest in questfil at page 1: the character panel where the entry
// has it, the banner and page 1 in the transcript, the page fields, then the
// page show. A quest that cannot be read shows blank. The editor's test play
// may start at another page, as if the quest began there.
void StartQuest(Program& p, QuestEntry entry, std::string_view firstPage = "1");

// The editor's test play: starts its working file tmpquest.ini, at page 1
// or at the page the author chose.
void LoadTmpGame(Program& p, std::string_view firstPage = "1");

// Opens the quest at path (Windows-1252) as the Load Quest zone opens one,
// its file dialog answered with the path: a quest named on the command line.
// It opens even where the picture menu is not on screen (a packaged game).
void OpenQuestNamed(Program& p, std::string_view path);

// Opens the quest (a program path) as Load A Quest File opens it, without
// its warning and its dialog: Restart and Continue.
void ReopenQuest(Program& p, std::string_view quest);

// The quest file of the editor's test play, in the per-user folder.
inline constexpr const char* kTestPlayQuest = "tmpquest.ini";

namespace frmgame {

// File / Load A Quest File, with its warning while a game is open.
void mnuloadquest_Click(Program& p);

// Game / Restart Quest: after one question, the open quest starts again as
// Load A Quest File starts it, without the dialog.
void mnurestart_Click(Program& p);

}  // namespace frmgame

}  // namespace fw
