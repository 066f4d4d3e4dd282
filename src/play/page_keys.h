#pragma once
#include <string>
#include <string_view>

namespace fw {

class Program;
struct GameState;

// The keys of a page that belong to one of its four options.
struct OptionKeys {
  const char* text;
  const char* score;
  const char* destination;
  const char* item;
  const char* add;
  const char* required;
};

inline constexpr OptionKeys kOptionKeys[4] = {
    {"Option One", "Option One Score", "Option One Destination Page", "Key Item1", "Add1", "Required1"},
    {"Option Two", "Option Two Score", "Option Two Destination Page", "Key Item2", "Add2", "Required2"},
    {"Option Three", "Option Three Score", "Option Three Destination Page", "Key Item3", "Add3", "Required3"},
    {"Option Four", "Option Four Score", "Option Four Destination Page", "Key Item4", "Add4", "Required4"},
};

// The keys of option n, 1 to 4.
inline const OptionKeys& KeysOf(int n) { return kOptionKeys[n - 1]; }

// A key of the page in pg, read fresh from the open quest.
std::string PageKey(Program& p, const GameState& g, std::string_view key);

// A key of another section of the open quest.
std::string QuestKey(Program& p, const GameState& g, std::string_view section, std::string_view key);

// The location of the page in pg, as the transcript gave it on arrival; ""
// while no quest is open or when the quest cannot be read.
std::string CurrentLocation(Program& p);

}  // namespace fw
