#pragma once

namespace fw {

class Program;

// Where the play engine hands over to the character and battle code: a page
// show starts a fight, a quest start rolls a character.

// The fight of the page in pg: fills and shows the battle panel.
void Battle(Program& p);

namespace frmgame {

// Re-Roll of the character panel: draws a fresh character.
void Command10_Click(Program& p);

}  // namespace frmgame

}  // namespace fw
