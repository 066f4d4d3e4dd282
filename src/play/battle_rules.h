#pragma once
#include <string>
#include <string_view>

namespace fw {

class Program;
struct GameState;

// The numbers and tests the fight shares with its outcomes.

// A value the fight needs as a number; blank or non-numeric counts as 0.
double NumberOr0(std::string_view text);

// A label is at or below zero when its text sorts at or before "0"; for
// every number that agrees with the arithmetic, and a blank label counts.
bool AtOrBelowZero(std::string_view text);

// Appends one line to the battle log behind a line break.
void LogLine(Program& p, std::string_view line);

// One round's blows, the player's and then (unless it killed) the
// monster's, on the labels: what the attack button does after its press and
// before its two tests.
void BattleBlows(Program& p);

// The outcomes of a round and of an escape.
void LoseBattle(Program& p);
void WinBattle(Program& p);
// The escape button's work once its press is over.
void EscapeBattle(Program& p);
void OutcomePage(Program& p, const std::string& target);

}  // namespace fw
