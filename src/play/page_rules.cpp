#include "play/page_rules.h"

#include "forms/convert.h"

namespace fw {

bool RequiredHides(bool held, std::string_view required) { return !held && required == "1"; }

bool ShownWhateverHeld(std::string_view required) { return required == "0"; }

bool AddHides(bool held, std::string_view add) { return held && IsNumberOne(add); }

bool OptionShows(std::string_view text, std::string_view required, bool held, std::string_view add) {
  // The order of the page steps: required gating, "not required", then Add.
  bool shows = true;
  if (RequiredHides(held, required)) shows = false;
  if (held || ShownWhateverHeld(required)) shows = true;
  if (AddHides(held, add)) shows = false;
  return shows && !text.empty();
}

bool GivesItem(std::string_view item, std::string_view add) { return !item.empty() && add == "1"; }

bool StartsBattle(std::string_view battle) { return IsNumberOne(battle); }

bool EscapeClosed(std::string_view escapeCheck) { return escapeCheck == "0"; }

bool AsksForCharacter(std::string_view charCreateAllow) { return charCreateAllow == "1"; }

}  // namespace fw
