#pragma once

namespace fw {

class Program;

namespace frmgame {

// The picture menu's hover captions: every mouse move over a hot zone names
// it in Label2, and a move over the bare picture empties it again.
void Picture2_MouseMove(Program& p);
void Image1_MouseMove(Program& p);
void Image11_MouseMove(Program& p);
void Image2_MouseMove(Program& p);
void Image5_MouseMove(Program& p);
void Image6_MouseMove(Program& p);
void Image7_MouseMove(Program& p);
void Image8_MouseMove(Program& p);
void Image9_MouseMove(Program& p);
void Image10_MouseMove(Program& p);
void Label14_MouseMove(Program& p);
void Label15_MouseMove(Program& p);

// The About zone: the About box of the Help menu.
void Image7_Click(Program& p);
// The Create A Quest zone: the quest editor's window.
void Image8_Click(Program& p);
// File > Create 'A' Quest does the same.
void mnucreatequest_Click(Program& p);
// The web link: the maker's site in the desktop's browser.
void Label14_Click(Program& p);

}  // namespace frmgame
}  // namespace fw
