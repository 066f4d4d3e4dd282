#include "play/battle_rules.h"

#include "forms/controls.h"
#include "forms/convert.h"
#include "forms/program.h"

namespace fw {

double NumberOr0(std::string_view text) { return ParseNumber(text).value_or(0); }

bool AtOrBelowZero(std::string_view text) { return text <= std::string_view("0"); }

void LogLine(Program& p, std::string_view line) {
  TextBox log(p.surface(), "FrmGame", "Text2");
  log.SetText(log.Text() + "\r\n" + std::string(line));
}

}  // namespace fw
