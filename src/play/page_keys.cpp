#include "play/page_keys.h"

#include "forms/program.h"
#include "play/game_state.h"
#include "store/program_store.h"

namespace fw {

std::string PageKey(Program& p, const GameState& g, std::string_view key) {
  return QuestKey(p, g, g.pg.Caption(), key);
}

std::string QuestKey(Program& p, const GameState& g, std::string_view section, std::string_view key) {
  return ReadINI(p, g.questfil.Caption(), section, key);
}

std::string CurrentLocation(Program& p) {
  GameState g(p);
  if (g.questfil.Caption() == kNoQuest) return "";
  try {
    return PageKey(p, g, "Location");
  } catch (const Failure&) {
    return "";
  }
}

}  // namespace fw
