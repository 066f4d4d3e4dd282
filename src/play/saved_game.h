#pragma once
#include <optional>
#include <string>
#include <vector>

namespace fw {

class Program;

// The contents of a *.sav, decoded: the text fields in the order of the
// record layout and the key items in list order.
struct SavedGame {
  std::string room, options[4], page, score;
  std::string name, hp, attack, defence, level;
  std::vector<std::string> items;
};

// How much of a saved game a load reads: the page alone (the picture menu's
// load), or the character and the key items too.
enum class SaveRead { Page, Whole };

// Reads the file once and checks what is read. nullopt when it fails the
// validity test (no page text and no first option) or a value read cannot be
// decoded, and for the whole game also when the hit points are neither blank
// nor a number. The page alone reads no character, so a damaged character
// does not keep it from loading.
std::optional<SavedGame> ReadSavedGame(Program& p, const std::string& file, SaveRead what = SaveRead::Whole);

// The name the save dialog proposes: the quest's title, the place and the
// local time, "The Lantern Road - The old bridge - 2026-11-25 14.05.sav".
std::string ProposedSaveName(Program& p);

// Writes the game on screen into a saved game, as Save Current Game writes
// one, without a dialog or a box; false when it could not be written.
bool WriteGameTo(Program& p, const std::string& file);

namespace frmgame {

// Save Current Game, from the menu and from the picture menu.
void mnusave_Click(Program& p);
void Image6_Click(Program& p);

// Load Saved Game: the page, the key items and the character.
void mnuload_Click(Program& p);

// The picture menu's load: the page alone.
void Image2_Click(Program& p);

}  // namespace frmgame
}  // namespace fw
