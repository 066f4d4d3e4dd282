#include "play/choose_option.h"

#include <cstdint>
#include <string>

#include "forms/convert.h"
#include "forms/program.h"
#include "play/game_state.h"
#include "play/page_keys.h"
#include "play/page_rules.h"
#include "play/show_page.h"
#include "play/transcript.h"

namespace fw {
namespace {

// The first option that is both on screen and selected; 0 for none. A hidden
// option may still hold a Value from before its caption went.
int SelectedOption(const GameState& g) {
  for (int n = 1; n <= 4; ++n)
    if (g.Option(n).Visible() && g.Option(n).Value()) return n;
  return 0;
}

// The score stays a signed 16-bit integer: a sum that is no number or leaves
// that range leaves the score as it was.
std::int16_t AddScore(std::int16_t score, const std::string& key) {
  std::int16_t sum = score;
  Skip([&] { sum = ToInt16(score + ToDouble(key)); });
  return sum;
}

// The chosen option's item and score come from the page being left; the
// change of pg divides them from the transcript and captions of the new page.
void ApplyOption(Program& p, const GameState& g, int n, std::int16_t& score) {
  const OptionKeys& keys = KeysOf(n);
  Skip([&] {
    std::string item = PageKey(p, g, keys.item);
    if (GivesItem(item, PageKey(p, g, keys.add))) g.List1.AddItem(item);
  });
  Skip([&] { score = AddScore(score, PageKey(p, g, keys.score)); });
  Skip([&] { g.score.SetCaption(NumberText(score)); });
  Skip([&] { g.pg.SetCaption(PageKey(p, g, keys.destination)); });
  Skip([&] { AppendBlock(g, PageKey(p, g, "Location")); });
  Skip([&] { AppendBlock(g, PageKey(p, g, "Page Text")); });
  for (int m = 1; m <= 4; ++m) Skip([&] { g.Option(m).SetCaption(PageKey(p, g, KeysOf(m).text)); });
  Skip([&] { g.room.SetText(PageKey(p, g, "Page Text")); });
}

}  // namespace

void ApplySelectedOption(Program& p) {
  GameState g(p);
  std::int16_t score = 0;
  Skip([&] { score = ToInt16(g.score.Caption()); });
  if (int n = SelectedOption(g)) ApplyOption(p, g, n, score);
}

void frmgame::Picture1_Click(Program& p) {
  p.PressAnimation(PictureBox(p.surface(), "FrmGame", "Picture1").id());
  ChooseSelectedOption(p);
}

void ChooseSelectedOption(Program& p) {
  ApplySelectedOption(p);
  ShowPage(p, PageCaller::ChooseOption);
}

}  // namespace fw
