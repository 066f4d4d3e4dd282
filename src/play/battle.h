#pragma once

namespace fw {

class Program;

namespace frmgame {

// Attack: one whole round, the player's blow and then the monster's.
void Picture7_Click(Program& p);

// Escape: leaves the fight for the page its BattleEscape names.
void Picture8_Click(Program& p);

}  // namespace frmgame
}  // namespace fw
