#include "play/battle_hooks.h"

namespace fw {

// CHARACTER/BATTLE: replace both bodies when the battle and the character
// panel arrive; their callers already run them at the right step.

void Battle(Program& p) {}

void frmgame::Command10_Click(Program& p) {}

}  // namespace fw
