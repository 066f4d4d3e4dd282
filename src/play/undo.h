#pragma once
#include <cstddef>
#include <string>

#include "forms/form_table.h"

namespace fw {

class Program;

// Undo takes back the player's steps one at a time: a Choose, a battle
// round, a Create or Re-Roll of the character (a level gain is part of the
// round that won it). A step is recorded around its handler; what it changed
// of the game window, the MIDI voice and the files it wrote is put back.

// How many steps are kept; the oldest goes first.
inline constexpr std::size_t kUndoSteps = 100;
// The key of Story Info by which a quest turns undo off ("1").
inline constexpr const char* kNoUndoKey = "NoUndo";
// The transcript's line for a step taken back; the transcript is never cut.
inline constexpr const char* kUndoneLine = "(Undone.)";

// Runs the handler as one step that Undo can take back.
void RecordStep(Program& p, PlainHandler handler);
template <PlainHandler Handler>
void Undoable(Program& p) {
  RecordStep(p, Handler);
}

// Forgets every step: a quest or a saved game was loaded.
void ForgetSteps(Program& p);

// Why Undo cannot be done now: "" when it can.
std::string WhyNoUndo(Program& p);

// How many steps are kept, and about how many bytes of memory they hold.
std::size_t UndoDepth(Program& p);
std::size_t UndoMemory(Program& p);

namespace frmgame {

// Game > Undo: takes back the last step.
void mnuundo_Click(Program& p);

}  // namespace frmgame

}  // namespace fw
