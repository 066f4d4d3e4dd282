#pragma once
#include <string>

namespace fw {

class Program;

namespace frmgame {

// The exit flow: every way out of the game window (File > Exit, the Quit
// zone, the window's close) arrives here. With a quest open it asks first;
// a Yes, or no quest at all, stops the music and ends the program.
void Form_QueryUnload(Program& p, bool& cancel);

// Help > About.
void mnuabout_Click(Program& p);

// Update > Run Auto-Update and the Auto Update label: the update program
// starts and this one ends, or a box says it is missing.
void mnuauto_Click(Program& p);
void Label15_Click(Program& p);

// Update > What's New.
void mnunew_Click(Program& p);

}  // namespace frmgame

// The About box's text.
std::string AboutText();

// The update program to start: the one beside the executable when it is
// there, otherwise the bare name, which the platform looks for on the PATH.
// Never the current folder: a downloaded game's folder must not bring a
// program of that name to run.
std::string AutoUpdateProgram(Program& p);

}  // namespace fw
