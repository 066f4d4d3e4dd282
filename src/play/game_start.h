#pragma once

namespace fw {

class Program;

namespace frmgame {

// FrmGame loading: a packaged game (a game.dat beside the executable) goes
// straight into its quest with the authoring parts hidden; otherwise the
// picture menu waits for the user.
void Form_Load(Program& p);

// The Start image of a packaged game: the same quest again from page 1.
void Image11_Click(Program& p);

// The Load Quest image of the picture menu.
void Image1_Click(Program& p);

}  // namespace frmgame
}  // namespace fw
