#include "play/page_view.h"

#include "forms/program.h"
#include "play/game_state.h"

namespace fw::frmgame {

void Timer1_Timer(Program& p) {
  GameState g(p);
  for (int n = 1; n <= 4; ++n)
    if (g.Option(n).Caption().empty()) g.Option(n).SetVisible(false);
  for (int n = 1; n <= 4; ++n)
    if (!g.Option(n).Caption().empty()) g.Option(n).SetVisible(true);
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
