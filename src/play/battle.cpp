#include "play/battle.h"

#include <cmath>
#include <string>

#include "forms/convert.h"
#include "forms/program.h"
#include "media/midi_api.h"
#include "media/page_media.h"
#include "play/battle_hooks.h"
#include "play/battle_rules.h"
#include "play/draws.h"
#include "play/game_state.h"
#include "play/page_keys.h"
#include "play/page_rules.h"
#include "play/quest_paths.h"

namespace fw {
namespace {

constexpr const char* kForm = "FrmGame";

// Battle panel handles, looked up by name on each use.
struct BattleBoxView {
  explicit BattleBoxView(Program& p)
      : box(p.surface(), kForm, "BattleBox"),
        monsterPicture(p.surface(), kForm, "Picture4"),
        monsterName(p.surface(), kForm, "Label4"),
        playerHp(p.surface(), kForm, "Label5"),
        monsterHp(p.surface(), kForm, "Label6"),
        playerBar(p.surface(), kForm, "ProgressBar1"),
        monsterBar(p.surface(), kForm, "ProgressBar2"),
        log(p.surface(), kForm, "Text2"),
        escape(p.surface(), kForm, "Picture8") {}
  PictureBox box, monsterPicture;
  Label monsterName, playerHp, monsterHp;
  ProgressBar playerBar, monsterBar;
  TextBox log;
  PictureBox escape;
};

std::string Locate(Program& p, const GameState& g, const std::string& name) {
  return name.empty() ? name : FindQuestFile(p, name, QuestFolder(p, g.questfil.Caption()));
}

bool Misses(int hit) { return hit <= 30; }

// Takes damage off a label's text and, unless that ends the side, off its bar.
void Wound(const Label& label, const ProgressBar& bar, double damage) {
  label.SetCaption(NumberText(NumberOr0(label.Caption()) - damage));
  if (AtOrBelowZero(label.Caption())) return;
  Skip([&] { bar.SetValue(ToSingle(bar.Value() - damage)); });
}

// The player's blow; true when it kills the monster.
bool PlayerBlow(Program& p, const GameState& g, const BattleBoxView& v) {
  if (Misses(HitDraw(p))) {
    LogLine(p, "You missed!");
    return false;
  }
  double attack = NumberOr0(QuestKey(p, g, "CharacterData", "CharAtk"));
  double damage = attack + DamageRoll(p);
  LogLine(p, "You deal " + NumberText(damage) + " damage!");
  Wound(v.monsterHp, v.monsterBar, damage);
  return AtOrBelowZero(v.monsterHp.Caption());
}

void MonsterBlow(Program& p, const GameState& g, const BattleBoxView& v) {
  if (Misses(HitDraw(p))) {
    LogLine(p, "The monster missed!");
    return;
  }
  double attack = NumberOr0(PageKey(p, g, "BattleMonAtk"));
  double damage = attack + DamageRoll(p);
  LogLine(p, "You've been hit for " + NumberText(damage) + " damage!");
  Wound(v.playerHp, v.playerBar, damage);
}

}  // namespace

void Battle(Program& p) {
  GameState g(p);
  BattleBoxView v(p);
  auto key = [&](const char* name) { return PageKey(p, g, name); };
  // The escape is open in every fight unless the page closes it.
  Skip([&] { v.escape.SetEnabled(true); });
  Skip([&] { v.log.SetText(""); });
  Skip([&] { v.monsterName.SetCaption(key("BattleMonName") + "'s HP:"); });
  Skip([&] { v.playerHp.SetCaption(SingleText(g.HPPlay.Value())); });
  Skip([&] {
    v.playerBar.SetMax(g.HPPlay.Max());
    v.playerBar.SetValue(g.HPPlay.Value());
  });
  Skip([&] {
    float hp = ToSingle(key("BattleMonHp"));
    v.monsterBar.SetMax(hp);
    v.monsterBar.SetValue(hp);
  });
  Skip([&] { v.monsterHp.SetCaption(key("BattleMonHp")); });
  Skip([&] {
    std::string image = key("BattleImage");
    v.monsterPicture.SetPicture(image.empty() ? Picture{}
                                              : LoadQuestPicture(p, image, QuestFolder(p, g.questfil.Caption())));
  });
  Skip([&] { g.Music.SetCaption(key("BattleMusic")); });
  if (EscapeClosed(key("BattleEscapecheck"))) Skip([&] { v.escape.SetEnabled(false); });
  Skip([&] { v.log.SetText("You are under attack from " + key("BattleMonName") + "!"); });
  Skip([&] { PlayMp3(p, Locate(p, g, key("BattleMp3"))); });
  Skip([&] {
    if (!g.Music.Caption().empty())
      StartMidi(p, Locate(p, g, g.Music.Caption()), true, FormHandle(p.surface(), kForm).hWnd());
  });
  Skip([&] { v.box.SetVisible(true); });
}

void BattleBlows(Program& p) {
  GameState g(p);
  BattleBoxView v(p);
  if (!PlayerBlow(p, g, v)) MonsterBlow(p, g, v);
}

void frmgame::Picture7_Click(Program& p) {
  BattleBoxView v(p);
  p.PressAnimation(PictureBox(p.surface(), kForm, "Picture7").id());
  BattleBlows(p);
  // Two separate tests: a click can lose and then win.
  if (AtOrBelowZero(v.playerHp.Caption())) LoseBattle(p);
  if (AtOrBelowZero(v.monsterHp.Caption())) WinBattle(p);
  Skip([&] { v.log.SetSelStart(static_cast<int>(v.log.Text().size())); });
}

void frmgame::Picture8_Click(Program& p) {
  p.PressAnimation(PictureBox(p.surface(), kForm, "Picture8").id());
  EscapeBattle(p);
}

void EscapeBattle(Program& p) {
  GameState g(p);
  PictureBox(p.surface(), kForm, "BattleBox").SetVisible(false);
  OutcomePage(p, PageKey(p, g, "BattleEscape"));
}

}  // namespace fw
