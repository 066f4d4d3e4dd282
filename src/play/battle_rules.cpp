#include "play/battle_rules.h"

#include <cmath>

#include "shell/controls.h"
#include "shell/convert.h"
#include "shell/program.h"

namespace fw {

int DrawOf(Program& p, int n) { return static_cast<int>(std::floor(static_cast<double>(p.Rnd()) * n)); }

int HitDraw(Program& p) {
  p.Randomize();
  int value = 0;
  do value = DrawOf(p, 100);
  while (value <= 25);
  return value;
}

int DamageRoll(Program& p) {
  p.Randomize();
  int value = 0;
  do value = DrawOf(p, 10);
  while (value <= 1);
  return value;
}

double NumberOr0(std::string_view text) { return ParseNumber(text).value_or(0); }

bool AtOrBelowZero(std::string_view text) { return text <= std::string_view("0"); }

void LogLine(Program& p, std::string_view line) {
  TextBox log(p.surface(), "FrmGame", "Text2");
  log.SetText(log.Text() + "\r\n" + std::string(line));
}

}  // namespace fw
