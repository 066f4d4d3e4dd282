#include <algorithm>
#include <cmath>
#include <string>

#include "forms/convert.h"
#include "forms/program.h"
#include "play/battle_rules.h"
#include "play/character.h"
#include "play/choose_option.h"
#include "play/draws.h"
#include "play/game_state.h"
#include "play/page_keys.h"
#include "play/show_page.h"
#include "play/transcript.h"

namespace fw {
namespace {

constexpr const char* kForm = "FrmGame";
constexpr const char* kSection = "CharacterData";

void HideBattleBox(Program& p) { PictureBox(p.surface(), kForm, "BattleBox").SetVisible(false); }

// The panel's third face: only the close image and Save Character.
void ShowLevelFace(Program& p) {
  FormSurface& s = p.surface();
  Image(s, kForm, "Image12").SetVisible(true);
  for (const char* name : {"Command9", "Command10", "Command11"}) CommandButton(s, kForm, name).SetVisible(false);
  PictureBox(s, kForm, "CharCreate").SetVisible(true);
}

void LevelGain(Program& p, const GameState& g) {
  p.MsgBox("You have gained a level!", 0);
  g.exp.SetValue(0);
  g.Text5.SetText(QuestKey(p, g, kSection, "CharHp"));
  g.Text4.SetText(QuestKey(p, g, kSection, "CharAtk"));
  g.Text3.SetText(QuestKey(p, g, kSection, "CharDef"));
  GrowBy(p, g.Text5, 15, 7);
  GrowBy(p, g.Text4, 5, 1);
  GrowBy(p, g.Text3, 5, 1);
  g.Text7.SetText(NumberText(NumberOr0(g.Text7.Text()) + 1));
  WriteCharacterToQuest(p, g, 1);  // all but the name
  FillHitPoints(g);
  ShowLevelFace(p);
}

// Experience: 100 or more after rounding is a level (a total past 16 bits
// too); otherwise the gauge takes the sum, kept within its range.
void GainExperience(Program& p, const GameState& g) {
  double gained = NumberOr0(PageKey(p, g, "BattleMonExp"));
  double sum = static_cast<double>(g.exp.Value()) + gained;
  if (RoundHalfEven(sum) >= 100) return LevelGain(p, g);
  g.exp.SetValue(std::clamp(ToSingle(sum), 0.0f, g.exp.Max()));
}

}  // namespace

void LoseBattle(Program& p) {
  GameState g(p);
  LogLine(p, "You have lost...");
  HideBattleBox(p);
  OutcomePage(p, PageKey(p, g, "BattleLose"));
}

void WinBattle(Program& p) {
  GameState g(p);
  // After a loss in the same click these read the page the loss moved to.
  Skip([&] {
    std::string item = PageKey(p, g, "BattleMonKeyItem");
    if (!item.empty()) g.List1.AddItem(item);
  });
  Skip([&] { GainExperience(p, g); });
  Skip([&] { LogLine(p, "You have won the battle!"); });
  Skip([&] { g.HPPlay.SetValue(ToSingle(Label(p.surface(), kForm, "Label5").Caption())); });
  Skip([&] { HideBattleBox(p); });
  Skip([&] { OutcomePage(p, PageKey(p, g, "BattleWin")); });
}

void OutcomePage(Program& p, const std::string& target) {
  GameState g(p);
  Skip([&] { AppendBlock(g, QuestKey(p, g, target, "Location")); });
  Skip([&] { AppendBlock(g, QuestKey(p, g, target, "Page Text")); });
  Skip([&] { g.pg.SetCaption(target); });
  Skip([&] { g.room.SetText(QuestKey(p, g, target, "Page Text")); });
  for (int n = 1; n <= 4; ++n) Skip([&] { g.Option(n).SetCaption(QuestKey(p, g, target, KeysOf(n).text)); });
  Skip([&] { ApplySelectedOption(p); });
  ShowPage(p, PageCaller::BattleOutcome);
}

}  // namespace fw
