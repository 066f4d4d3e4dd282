#pragma once

namespace fw {

// One key of a saved game or character file, in the order it is written.
struct RecordKey {
  const char* section;
  const char* key;
  bool scrambled;
};

// A saved game, *.sav: the page on show, the score, the character. The key
// items follow in section "List Data", keyed 0, 1, 2, ... in the clear.
inline constexpr RecordKey kSavedGameKeys[] = {
    {"saved game", "room", true},          {"saved game", "option 1", true},
    {"saved game", "option 2", true},      {"saved game", "option 3", true},
    {"saved game", "option 4", true},      {"saved game", "page", true},
    {"saved game", "Poo", true},           {"saved game", "HowMuchInList", false},
    {"CharacterData", "CharName", true},   {"CharacterData", "CharHp", true},
    {"CharacterData", "CharAtk", true},    {"CharacterData", "CharDef", true},
    {"CharacterData", "CharLevel", true},
};
inline constexpr const char* kListDataSection = "List Data";

// A character file, *.cha: the character alone, scrambled like a save's.
inline constexpr RecordKey kCharacterKeys[] = {
    {"CharacterData", "CharName", true}, {"CharacterData", "CharHp", true},
    {"CharacterData", "CharAtk", true},  {"CharacterData", "CharDef", true},
    {"CharacterData", "CharLevel", true},
};

}  // namespace fw
