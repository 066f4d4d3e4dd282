#pragma once
#include <string>

namespace fw {

class Program;

// How one fight goes for a character arriving with given numbers: fought
// many times through the game's own rounds and draws, always attacking.
struct FightOdds {
  std::string page, monster;
  float hp = 0, hpMax = 0;  // the character's on arrival
  std::string attack;       // CharAtk on arrival
  int fights = 0, wins = 0, losses = 0, undecided = 0;
  double meanHpLeft = 0, lowestHpLeft = 0;  // on a win
  double meanRounds = 0;
  bool escapeOpen = true;
  // The same fight for a cautious player, who escapes (when the page lets
  // it) once the monster's next blow could kill.
  int cautiousWins = 0, cautiousLosses = 0, cautiousEscapes = 0;
};

// Fights the battle of `page` `fights` times for a character with `hp` of
// `hpMax`, and as often again for a cautious player when the escape is open;
// the quest is the one in questfil. A fight that lasts 10,000
// rounds counts as undecided. Leaves the game's controls as the last fight
// left them: the caller puts its state back.
FightOdds FightOften(Program& p, const std::string& page, float hp, float hpMax, int fights);

// One line for people (UTF-8).
std::string FightOddsText(const FightOdds& odds);

}  // namespace fw
