#pragma once

namespace fw {

class Program;

namespace frmgame {

// The Choose button: applies the selected option (its key item, its score,
// its destination) and shows the page it leads to. With nothing selected the
// page in pg is shown again.
void Picture1_Click(Program& p);

}  // namespace frmgame

// The option step alone: the selected option's item, score and move to its
// page; nothing when no option is selected.
void ApplySelectedOption(Program& p);

// The Choose button's work once its press is over: the option step, then the
// page show. Tools that play many moves call it without the press's wait.
void ChooseSelectedOption(Program& p);

// The same step under the name the game logic uses for it.
inline void ChooseOption(Program& p) { frmgame::Picture1_Click(p); }

}  // namespace fw
