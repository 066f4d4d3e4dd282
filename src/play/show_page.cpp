#include "play/show_page.h"

#include <string>

#include "forms/convert.h"
#include "forms/program.h"
#include "play/autosave.h"
#include "play/battle_hooks.h"
#include "play/game_state.h"
#include "play/list_find.h"
#include "play/page_keys.h"
#include "play/page_media.h"
#include "play/page_rules.h"

namespace fw {
namespace {

// The steps that differ between callers; gating, the picture, the movie, the
// audio, the battle and the clearing of the selection run for all of them.
struct CallerSteps {
  bool autoRepeat;
  bool heal;
  bool hideMenu;
};

CallerSteps StepsOf(PageCaller caller) {
  switch (caller) {
    case PageCaller::ChooseOption: return {true, true, false};
    case PageCaller::StartImage:
    case PageCaller::LoadQuestFile: return {true, false, true};
    case PageCaller::PackagedStart:
    case PageCaller::BattleOutcome:
    case PageCaller::TestPlay: break;
  }
  return {false, false, true};
}

bool Held(Program& p, const GameState& g, int n) {
  return ListFind(g.List1, PageKey(p, g, KeysOf(n).item)) == "found";
}

// An option that needs its item shows only while the item is held; one marked
// "0" (not required) shows its text in any case.
void RequiredGating(Program& p, const GameState& g) {
  for (int n = 1; n <= 4; ++n) {
    Skip([&] {
      if (Held(p, g, n)) g.Option(n).SetCaption(PageKey(p, g, KeysOf(n).text));
      else if (RequiredHides(false, PageKey(p, g, KeysOf(n).required))) g.Option(n).SetCaption("");
    });
  }
  for (int n = 1; n <= 4; ++n) {
    Skip([&] {
      if (ShownWhateverHeld(PageKey(p, g, KeysOf(n).required))) g.Option(n).SetCaption(PageKey(p, g, KeysOf(n).text));
    });
  }
}

// An option that hands out an item goes once the item is held, so the item
// is offered only once.
void AddGating(Program& p, const GameState& g) {
  for (int n = 1; n <= 4; ++n) {
    Skip([&] {
      if (AddHides(Held(p, g, n), PageKey(p, g, KeysOf(n).add))) g.Option(n).SetCaption("");
    });
  }
}

void HealStep(Program& p, const GameState& g) {
  if (PageKey(p, g, "HealChar") == "1") g.HPPlay.SetValue(g.HPPlay.Max());
}

void BattleStep(Program& p, const GameState& g) {
  if (StartsBattle(PageKey(p, g, "Battle"))) Battle(p);
}

}  // namespace

void ShowPage(Program& p, PageCaller caller) {
  GameState g(p);
  CallerSteps steps = StepsOf(caller);
  RequiredGating(p, g);
  Skip([&] { PageImageStep(p, g); });
  Skip([&] { PageMovieStep(p, g, caller); });
  AddGating(p, g);
  Skip([&] { PageAudioStep(p, g, caller); });
  if (steps.autoRepeat) Skip([&] { AutoRepeatStep(p, g, caller); });
  if (steps.heal) Skip([&] { HealStep(p, g); });
  Skip([&] { BattleStep(p, g); });
  for (int n = 1; n <= 4; ++n) Skip([&] { g.Option(n).SetValue(false); });
  if (steps.hideMenu) Skip([&] { PictureBox(p.surface(), "FrmGame", "Picture2").SetVisible(false); });
  ScheduleAutosave(p);
}

}  // namespace fw
