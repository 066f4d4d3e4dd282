#pragma once

namespace fw {

class Program;

namespace frmgame {

// Every 10 ms: an option is on screen exactly while its caption has text.
void Timer1_Timer(Program& p);

// The transcript keeps its last line in view.
void Text1_Change(Program& p);
void Form_Resize(Program& p);

}  // namespace frmgame
}  // namespace fw
