#pragma once

namespace fw {

class Program;

// Where the play engine hands over to the character and battle code. Until
// that code lands these are the only steps of a page show or a quest start
// that do nothing.

// The fight of the page in pg: fills and shows the battle panel.
void Battle(Program& p);

namespace frmgame {

// Re-Roll of the character panel: draws a fresh character.
void Command10_Click(Program& p);

}  // namespace frmgame

}  // namespace fw
