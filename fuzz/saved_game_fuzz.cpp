// Fuzzes the readers of downloaded files that write into the player's quest:
// a saved game loaded whole, and a character file loaded and then created.
// Whatever the file holds, the quest keeps its sections and its page, and
// gains no key outside the character's section.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "fuzz_program.h"
#include "play/character.h"
#include "play/game_state.h"
#include "play/saved_game.h"
#include "store/profile.h"

namespace {

constexpr std::string_view kQuest =
    "[Story Info]\r\nTitle=Fuzz\r\n[CharacterData]\r\nCharCreateAllow=1\r\nCharLoadAllow=1\r\n"
    "[1]\r\nPage Text=One.\r\nOption One=On\r\nOption One Destination Page=1\r\n";

// Every key outside CharacterData, in file order.
std::string KeysBesideTheCharacter(const std::string& quest) {
  std::string keys;
  for (const fw::ProfileEntry& e : fw::ProfileEntries(fw::fuzz::FileText(quest)))
    if (e.section != "CharacterData") keys += e.section + "/" + e.key + "=" + e.value + "\n";
  return keys;
}

void CheckQuestKept(const std::string& quest, const std::string& before) {
  if (KeysBesideTheCharacter(quest) != before) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view bytes = fw::fuzz::AsText(data, size);
  std::string quest = fw::fuzz::PutFile("quest.fbw", kQuest);
  std::string before = KeysBesideTheCharacter(quest);
  {
    fw::fuzz::FuzzProgram f;
    fw::Program& p = f.program;
    fw::GameState g(p);
    g.questfil.SetCaption(quest);
    g.pg.SetCaption("1");
    f.platform.dialogs.QueueFile("FrmGame.file", fw::fuzz::PutFile("game.sav", bytes));
    fw::frmgame::mnuload_Click(p);
    CheckQuestKept(quest, before);
  }
  {
    fw::fuzz::FuzzProgram f;
    fw::Program& p = f.program;
    fw::GameState g(p);
    g.questfil.SetCaption(quest);
    f.platform.dialogs.QueueFile("FrmGame.charfile", fw::fuzz::PutFile("hero.cha", bytes));
    fw::frmgame::Command11_Click(p);
    fw::frmgame::Command9_Click(p);
    CheckQuestKept(quest, before);
  }
  return 0;
}
