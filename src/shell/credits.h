#pragma once

namespace fw {

class Program;

namespace frmgame {

// The credits: a tall picture that climbs through the black credits panel,
// 25 twips a tick, and puts the panel away once it has passed the top.
// Opening them again while they run changes nothing.
void mnucredits_Click(Program& p);
void Image9_Click(Program& p);
void Timer4_Timer(Program& p);

}  // namespace frmgame
}  // namespace fw
