#include "play/page_view.h"

#include <string>

#include "forms/controls.h"
#include "forms/program.h"
#include "play/game_state.h"

namespace fw::frmgame {
namespace {

// The ending's line, in place of the options. Only what changes is set, so
// that the timer settles and a waiting event loop may sleep.
void ShowTheEnd(Program& p, const GameState& g) {
  FormSurface& s = p.surface();
  bool noOptions = true;
  for (int n = 1; n <= 4; ++n) noOptions = noOptions && g.Option(n).Caption().empty();
  std::string quest = g.questfil.Caption();
  Label end(s, "FrmGame", "lblTheEnd");
  bool ending = noOptions && !quest.empty() && quest != kNoQuest;
  if (ending) {
    const char* line = Menu(s, "FrmGame", "mnufile").Visible() ? kTheEnd : kTheEndPackaged;
    if (end.Caption() != line) end.SetCaption(line);
  }
  end.SetVisible(ending);
}

}  // namespace

void Timer1_Timer(Program& p) {
  GameState g(p);
  for (int n = 1; n <= 4; ++n)
    if (g.Option(n).Caption().empty()) g.Option(n).SetVisible(false);
  for (int n = 1; n <= 4; ++n)
    if (!g.Option(n).Caption().empty()) g.Option(n).SetVisible(true);
  ShowTheEnd(p, g);
}

void Text1_Change(Program& p) {
  GameState g(p);
  g.Text1.SetSelStart(static_cast<int>(g.Text1.Text().size()));
}

void Form_Resize(Program& p) {
  // A resize can come while the form is still loading.
  Skip([&] { Text1_Change(p); });
}

}  // namespace fw::frmgame
