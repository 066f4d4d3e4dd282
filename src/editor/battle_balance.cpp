#include "editor/battle_balance.h"

#include <algorithm>
#include <cstdio>

#include "forms/codepage.h"
#include "forms/convert.h"
#include "forms/program.h"
#include "play/battle_hooks.h"
#include "play/battle_rules.h"
#include "play/draws.h"
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

namespace {

enum class Ending { Win, Loss, Escape, Undecided };

struct OneFight {
  Ending ending = Ending::Undecided;
  int rounds = 0;
  double hpLeft = 0;
};

// One fight from Battle's set-up to the attack button's two zero tests, or
// to an escape before a round that could kill.
OneFight Fight(Program& p, const std::string& page, float hp, float hpMax, bool cautious) {
  GameState g(p);
  Label playerHp(p.surface(), kForm, "Label5"), monsterHp(p.surface(), kForm, "Label6");
  g.pg.SetCaption(page);
  g.HPPlay.SetMax(hpMax);
  g.HPPlay.SetValue(hp);
  Battle(p);
  double strongest = NumberOr0(PageKey(p, g, "BattleMonAtk")) + kDamageRollMost;
  OneFight f;
  while (f.rounds < kMaxRounds) {
    if (cautious && NumberOr0(playerHp.Caption()) <= strongest) {
      f.ending = Ending::Escape;
      break;
    }
    BattleBlows(p);
    ++f.rounds;
    // The attack button's two tests, in its order: a loss goes first.
    if (AtOrBelowZero(playerHp.Caption())) {
      f.ending = Ending::Loss;
      break;
    }
    if (AtOrBelowZero(monsterHp.Caption())) {
      f.ending = Ending::Win;
      f.hpLeft = NumberOr0(playerHp.Caption());
      break;
    }
  }
  return f;
}

}  // namespace

FightOdds FightOften(Program& p, const std::string& page, float hp, float hpMax, int fights) {
  GameState g(p);
  FightOdds odds;
  odds.page = page;
  odds.hp = hp;
  odds.hpMax = hpMax;
  double hpLeft = 0, rounds = 0;
  odds.lowestHpLeft = hpMax;
  for (int fight = 0; fight < fights; ++fight) {
    OneFight f = Fight(p, page, hp, hpMax, false);
    ++odds.fights;
    rounds += f.rounds;
    if (f.ending == Ending::Loss) ++odds.losses;
    if (f.ending == Ending::Undecided) ++odds.undecided;
    if (f.ending == Ending::Win) {
      ++odds.wins;
      hpLeft += f.hpLeft;
      odds.lowestHpLeft = std::min(odds.lowestHpLeft, f.hpLeft);
    }
  }
  odds.monster = PageKey(p, g, "BattleMonName");
  odds.attack = QuestKey(p, g, "CharacterData", "CharAtk");
  odds.escapeOpen = PictureBox(p.surface(), kForm, "Picture8").Enabled();
  odds.meanHpLeft = odds.wins ? hpLeft / odds.wins : 0;
  if (!odds.wins) odds.lowestHpLeft = 0;
  odds.meanRounds = odds.fights ? rounds / odds.fights : 0;
  for (int fight = 0; odds.escapeOpen && fight < fights; ++fight) {
    Ending e = Fight(p, page, hp, hpMax, true).ending;
    odds.cautiousWins += e == Ending::Win;
    odds.cautiousLosses += e == Ending::Loss;
    odds.cautiousEscapes += e == Ending::Escape;
  }
  return odds;
}

std::string FightOddsText(const FightOdds& o) {
  std::string line = "arriving with " + SingleText(o.hp) + " of " + SingleText(o.hpMax) + " hp, attack " +
                     (o.attack.empty() ? std::string("(none)") : Utf8FromCp1252(o.attack)) + ": win " +
                     Percent(o.wins, o.fights) + ", loss " + Percent(o.losses, o.fights);
  if (o.undecided) line += ", undecided " + Percent(o.undecided, o.fights);
  if (o.wins) line += "; hp left on a win " + Decimal(o.meanHpLeft) + " on average, " + NumberText(o.lowestHpLeft) + " at worst";
  line += "; " + Decimal(o.meanRounds) + " rounds (" + std::to_string(o.fights) + " fights)";
  if (!o.escapeOpen) return line + "; no escape";
  return line + "; escaping once a blow could kill: win " + Percent(o.cautiousWins, o.fights) + ", loss " +
         Percent(o.cautiousLosses, o.fights) + ", escape " + Percent(o.cautiousEscapes, o.fights);
}

}  // namespace fw
