#include "editor/battle_balance.h"

#include <algorithm>
#include <cstdio>

#include "forms/codepage.h"
#include "forms/convert.h"
#include "forms/program.h"
#include "play/battle_hooks.h"
#include "play/battle_rules.h"
#include "play/game_state.h"
#include "play/page_keys.h"

namespace fw {
namespace {

constexpr const char* kForm = "FrmGame";
constexpr int kMaxRounds = 10000;

std::string Percent(int part, int whole) {
  char buf[16];
  std::snprintf(buf, sizeof buf, "%.1f%%", whole ? 100.0 * part / whole : 0.0);
  return buf;
}

std::string Decimal(double value) {
  char buf[32];
  std::snprintf(buf, sizeof buf, "%.1f", value);
  return buf;
}

}  // namespace

FightOdds FightOften(Program& p, const std::string& page, float hp, float hpMax, int fights) {
  GameState g(p);
  Label playerHp(p.surface(), kForm, "Label5"), monsterHp(p.surface(), kForm, "Label6");
  FightOdds odds;
  odds.page = page;
  odds.hp = hp;
  odds.hpMax = hpMax;
  double hpLeft = 0, rounds = 0;
  odds.lowestHpLeft = hpMax;
  for (int fight = 0; fight < fights; ++fight) {
    g.pg.SetCaption(page);
    g.HPPlay.SetMax(hpMax);
    g.HPPlay.SetValue(hp);
    Battle(p);
    int round = 0;
    bool lost = false, won = false;
    while (!lost && !won && round < kMaxRounds) {
      BattleBlows(p);
      ++round;
      // The attack button's two tests, in its order: a loss goes first.
      lost = AtOrBelowZero(playerHp.Caption());
      won = AtOrBelowZero(monsterHp.Caption());
    }
    ++odds.fights;
    rounds += round;
    if (lost) {
      ++odds.losses;
    } else if (won) {
      ++odds.wins;
      double left = NumberOr0(playerHp.Caption());
      hpLeft += left;
      odds.lowestHpLeft = std::min(odds.lowestHpLeft, left);
    } else {
      ++odds.undecided;
    }
  }
  odds.monster = PageKey(p, g, "BattleMonName");
  odds.attack = QuestKey(p, g, "CharacterData", "CharAtk");
  odds.escapeOpen = PictureBox(p.surface(), kForm, "Picture8").Enabled();
  odds.meanHpLeft = odds.wins ? hpLeft / odds.wins : 0;
  if (!odds.wins) odds.lowestHpLeft = 0;
  odds.meanRounds = odds.fights ? rounds / odds.fights : 0;
  return odds;
}

std::string FightOddsText(const FightOdds& o) {
  std::string line = "arriving with " + SingleText(o.hp) + " of " + SingleText(o.hpMax) + " hp, attack " +
                     (o.attack.empty() ? std::string("(none)") : Utf8FromCp1252(o.attack)) + ": win " +
                     Percent(o.wins, o.fights) + ", loss " + Percent(o.losses, o.fights);
  if (o.undecided) line += ", undecided " + Percent(o.undecided, o.fights);
  line += o.escapeOpen ? ", escape open" : ", no escape";
  if (o.wins) line += "; hp left on a win " + Decimal(o.meanHpLeft) + " on average, " + NumberText(o.lowestHpLeft) + " at worst";
  return line + "; " + Decimal(o.meanRounds) + " rounds (" + std::to_string(o.fights) + " fights)";
}

}  // namespace fw
