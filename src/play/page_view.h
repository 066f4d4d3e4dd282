#pragma once

namespace fw {

class Program;

// The line in the option area at a page with no options (Windows-1252): how
// to play again, by the menu this window offers. A packaged game hides the
// File menu; its menu button leads to New Game.
inline constexpr const char* kTheEnd = "The End \x97 Game > Restart Quest to play again";
inline constexpr const char* kTheEndPackaged = "The End \x97 Menu > New Game to play again";

namespace frmgame {

// Every 10 ms: an option is on screen exactly while its caption has text,
// and the ending's line while a quest is open and no option has one.
void Timer1_Timer(Program& p);

// The transcript keeps its last line in view.
void Text1_Change(Program& p);
void Form_Resize(Program& p);

}  // namespace frmgame
}  // namespace fw
