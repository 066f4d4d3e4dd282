// Fuzzes the quest checker on an arbitrary quest: its findings, as text and
// as JSON, come back for any file.
#include <cstdint>
#include <cstdlib>

#include "editor/quest_check.h"
#include "fuzz_program.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string quest = fw::fuzz::PutFile("quest.fbw", fw::fuzz::AsText(data, size));
  fw::fuzz::FuzzProgram f;
  auto findings = fw::CheckQuest(f.program, quest);
  if (!findings) std::abort();  // the file is there and readable
  fw::FindingsText(quest, *findings);
  fw::FindingsJson(quest, *findings);
  return 0;
}
