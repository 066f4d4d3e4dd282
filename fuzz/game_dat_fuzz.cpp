// Fuzzes a packaged game's start on an arbitrary game.dat beside the
// program. Its quest is always the scratch folder's own, so that no input
// can send the program to a file elsewhere on the machine.
#include <cstdint>

#include "fuzz_program.h"
#include "play/game_start.h"
#include "store/profile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fw::fuzz::PutFile("quest.fbw", "[Story Info]\r\nTitle=Packaged\r\n[1]\r\nPage Text=One.\r\nBattle=0\r\n");
  std::string dat = fw::SetProfileValue(fw::fuzz::AsText(data, size), "loaddat", "QuestFile", "quest.fbw");
  fw::fuzz::PutFile("game.dat", dat);
  fw::fuzz::FuzzProgram f;
  f.program.RunEvent([&] { fw::frmgame::Form_Load(f.program); });
  f.program.RunEvent([&] { fw::frmgame::Image11_Click(f.program); });
  return 0;
}
