#pragma once
#include "forms/controls.h"

namespace fw {

class Program;

// The state of the running game. Every field is a handle on the FrmGame
// control that holds it, so the surface stays the only store: two GameState
// objects built from one Program see and change the same values.
struct GameState {
  explicit GameState(Program& p);

  Label questfil;  // the quest's path; "No Quest Loaded." while none is open
  Label pg;        // the current page's section name
  Label score;     // a signed 16-bit integer as decimal text
  TextBox room;    // the current page's text, kept for saved games
  TextBox Text1;   // the transcript: only ever appended to
  ListBox List1;   // key items in the order they were added, duplicates kept
  OptionButton Option1, Option2, Option3, Option4;
  Image PicWindow;
  Label Music;  // the Music key of the last page shown
  TextBox Text3, Text4, Text5, Text6, Text7;  // defence, attack, hit points, name, level
  ProgressBar HPPlay, exp;

  // Option1 .. Option4 by number, for the loops over the four choices.
  const OptionButton& Option(int n) const;
};

// The marker text of questfil while no quest is open.
inline constexpr const char* kNoQuest = "No Quest Loaded.";

}  // namespace fw
