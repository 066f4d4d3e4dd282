#pragma once
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "editor/battle_balance.h"

namespace fw {

class Program;

// Plays a quest through the game's own handlers, headless, from every state
// reached: the page, the key items held and the score. A fight is left by
// each of its outcomes (win, loss and, when open, escape), so the
// character's numbers never decide which pages are met; a win is taken with
// the hit points the character came with. The character is the one a new
// game rolls and creates. Then each battle met is fought many times for the
// hit points the character arrived with, for its balance.
struct ExploreOptions {
  std::size_t maxStates = 20000;   // a bound on the breadth-first search
  int randomGames = 0;             // > 0: play this many random games instead
  std::uint32_t seed = 1;          // for the random games
  std::size_t maxSteps = 1000;     // a random game stops after this many choices
  int fights = 1000;               // each battle met, fought this often per arrival

  // Told now and then how far the run is: states met of the bound, or
  // games played of those asked for.
  std::function<void(std::size_t done, std::size_t total)> progress;
  // Asked between states, games and fights: true ends the run there, with a
  // report of what it has met (a run stopped by a signal).
  std::function<bool()> stopped;
};

struct ExploreReport {
  std::size_t states = 0;      // distinct states met
  std::size_t games = 0;       // random games played (0 for the search)
  bool bounded = false;        // stopped at the bound: coverage is partial
  std::vector<std::string> reached, neverReached;  // page names, file order
  struct End {
    std::string page;
    bool deadEnd = false;          // options written, none to choose
    int minScore = 0, maxScore = 0;
    std::vector<std::string> path; // the shortest run of choices found
  };
  std::vector<End> ends;           // endings and dead ends, file order
  // Reachable states from which no state without a choice (an ending or a
  // dead end) can be reached: the player can only go round. States here are
  // told apart by page and items alone, since the score never changes which
  // choices there are, so a loop that only moves the score is found however
  // far the search went. One per set of pages gone round.
  struct Trap {
    std::vector<std::string> path;   // the shortest run of choices into it
    std::vector<std::string> pages;  // the pages it goes round, file order
    std::size_t states = 0;          // told apart by page and items
  };
  std::vector<Trap> traps;
  std::map<std::string, std::size_t> battles;  // battle page -> arrivals (states)
  std::vector<FightOdds> balance;  // per battle page and hit points on arrival
};

// Explores the quest in questfil's place on `p`, a program with the game's
// forms whose fights may write the quest: give it a copy.
ExploreReport ExploreQuest(Program& p, std::string_view quest, const ExploreOptions& options);

// The report for people (UTF-8).
std::string ExploreReportText(const ExploreReport& report);

}  // namespace fw
