#include "play/game_state.h"

#include <stdexcept>

#include "forms/program.h"

namespace fw {

namespace {
constexpr const char* kForm = "FrmGame";
}  // namespace

GameState::GameState(Program& p)
    : questfil(p.surface(), kForm, "questfil"),
      pg(p.surface(), kForm, "pg"),
      score(p.surface(), kForm, "score"),
      room(p.surface(), kForm, "room"),
      Text1(p.surface(), kForm, "Text1"),
      List1(p.surface(), kForm, "List1"),
      Option1(p.surface(), kForm, "Option1"),
      Option2(p.surface(), kForm, "Option2"),
      Option3(p.surface(), kForm, "Option3"),
      Option4(p.surface(), kForm, "Option4"),
      PicWindow(p.surface(), kForm, "PicWindow"),
      Music(p.surface(), kForm, "Music"),
      Text3(p.surface(), kForm, "Text3"),
      Text4(p.surface(), kForm, "Text4"),
      Text5(p.surface(), kForm, "Text5"),
      Text6(p.surface(), kForm, "Text6"),
      Text7(p.surface(), kForm, "Text7"),
      HPPlay(p.surface(), kForm, "HPPlay"),
      exp(p.surface(), kForm, "exp") {}

const OptionButton& GameState::Option(int n) const {
  switch (n) {
    case 1: return Option1;
    case 2: return Option2;
    case 3: return Option3;
    case 4: return Option4;
  }
  throw std::out_of_range("no option " + std::to_string(n));
}

}  // namespace fw
