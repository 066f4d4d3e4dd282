#pragma once
#include <cstddef>

namespace fw {

class Program;
struct GameState;

// Writes the character's fields into CharacterData of the quest in the clear,
// as one change, in the order name, hit points, strength, defence, level,
// starting at `first` (1 leaves the name out). The player is not told when
// the quest cannot be written; the program's notices are, and it gives false.
bool WriteCharacterToQuest(Program& p, const GameState& g, std::size_t first = 0);

// Both values of the hit point gauge at the full hit points of Text5; a text
// that is no number leaves the gauge as it was.
void FillHitPoints(const GameState& g);

namespace frmgame {

// The character panel. Re-Roll (Command10_Click) is declared with the other
// hooks of the play engine, since StartQuest calls it too.

// Create: commits the panel's character to the quest file and the gauges.
void Command9_Click(Program& p);

// Keeps Create enabled exactly while name, hit points, strength and defence
// are all filled in.
void Timer3_Timer(Program& p);

// Load Character: reads a scrambled *.cha into the panel's fields.
void Command11_Click(Program& p);

// Save Character, from the panel's button and from the file menu.
void Command3_Click(Program& p);
void mnusavechar_Click(Program& p);

// Opens the panel for viewing; Image12 closes it again.
void Picture5_Click(Program& p);
void Image12_Click(Program& p);

}  // namespace frmgame
}  // namespace fw
