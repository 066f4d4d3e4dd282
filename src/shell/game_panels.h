#pragma once

namespace fw {

class Program;

namespace frmgame {

// The ways between the game window's screens: the picture menu, the game
// screen under it and the inventory panel over it.

// The menu button of the game screen: back to the picture menu.
void Image4_Click(Program& p);

// Resume Game on the picture menu: the game screen as it was.
void Image5_Click(Program& p);

// The inventory: Picture3 opens it (Command6 does the same without the
// press), Picture6 closes it.
void Picture3_Click(Program& p);
void Command6_Click(Program& p);
void Picture6_Click(Program& p);

// File > Exit and the Quit zone of the picture menu: the game window unloads,
// which is how the program ends.
void mnuexit_Click(Program& p);
void Image10_Click(Program& p);

}  // namespace frmgame
}  // namespace fw
