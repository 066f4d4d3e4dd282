#include "play/draws.h"

#include <cmath>
#include <string>

#include "forms/controls.h"
#include "forms/convert.h"
#include "forms/program.h"
#include "play/battle_rules.h"

namespace fw {

int DrawOf(Program& p, int n) { return static_cast<int>(std::floor(static_cast<double>(p.Rnd()) * n)); }

int RollAbove(Program& p, int n, int floor, const std::function<void(int)>& each) {
  p.Randomize();
  int value = 0;
  do {
    value = DrawOf(p, n);
    if (each) each(value);
  } while (value <= floor);
  return value;
}

int HitDraw(Program& p) { return RollAbove(p, 100, 25); }

int DamageRoll(Program& p) { return RollAbove(p, kDamageRollSize, 1); }

void RollInto(Program& p, const TextBox& box, int n, int floor) {
  RollAbove(p, n, floor, [&](int value) { box.SetText(std::to_string(value)); });
}

void GrowBy(Program& p, const TextBox& box, int n, int floor) {
  RollAbove(p, n, floor, [&](int value) { box.SetText(NumberText(NumberOr0(box.Text()) + value)); });
}

}  // namespace fw
