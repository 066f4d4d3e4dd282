#pragma once
#include <string_view>

namespace fw {

// The rules by which a page's keys decide what the player can do there. The
// handlers apply them to the controls; the author tools apply the same ones
// to a quest file, so that a tool never judges a quest by other rules than
// the game plays it by.

// Every quest starts on this page.
inline constexpr std::string_view kFirstPage = "1";

// Gating of one option by its key item: `held` is ListFind's answer for the
// option's item (a blank item is always held).
// A required item that is not held blanks the option.
bool RequiredHides(bool held, std::string_view required);
// An option marked "0" (not required) shows its text whatever is held.
bool ShownWhateverHeld(std::string_view required);
// An option that hands out an item goes once the item is held.
bool AddHides(bool held, std::string_view add);
// The steps above together, on a page just loaded with the option's text as
// its caption: true when the option is on screen.
bool OptionShows(std::string_view text, std::string_view required, bool held, std::string_view add);

// Choosing the option puts its item into the key items.
bool GivesItem(std::string_view item, std::string_view add);

// A page with this `Battle` key starts a fight when shown.
bool StartsBattle(std::string_view battle);
// A fight whose page has this `BattleEscapecheck` has no escape.
bool EscapeClosed(std::string_view escapeCheck);

// A quest with this `CharCreateAllow` has the player make a character.
bool AsksForCharacter(std::string_view charCreateAllow);

}  // namespace fw
