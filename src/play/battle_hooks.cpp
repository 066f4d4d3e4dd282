#include "play/battle_hooks.h"

namespace fw {

// BATTLE: replace this body when the battle arrives; its caller already runs
// it at the right step.
void Battle(Program& p) {}

}  // namespace fw
