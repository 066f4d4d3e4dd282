#include "play/character.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "forms/convert.h"
#include "forms/program.h"
#include "play/battle_hooks.h"
#include "play/draws.h"
#include "play/game_state.h"
#include "play/page_keys.h"
#include "store/program_store.h"
#include "store/scrambler.h"

namespace fw {
namespace {

constexpr const char* kForm = "FrmGame";
constexpr const char* kSection = "CharacterData";
constexpr const char* kNotUsed = "Quest does not utilize the character option";

// One field of the record: its text box, its key on disk and the name the
// panel gives it, in the order every file write and read goes.
struct Field {
  TextBox GameState::*box;
  const char* key;
  const char* label;
};
constexpr std::array<Field, 5> kFields{{
    {&GameState::Text6, "CharName", "Name"},
    {&GameState::Text5, "CharHp", "Hit Points"},
    {&GameState::Text4, "CharAtk", "Strength"},
    {&GameState::Text3, "CharDef", "Defence"},
    {&GameState::Text7, "CharLevel", "Level"},
}};

// The first two refusals shared by Load and Save Character; true when the
// command may go on.
bool QuestUsesCharacter(Program& p, const GameState& g, const char* noQuest) {
  if (g.questfil.Caption() == kNoQuest) {
    p.MsgBox(noQuest, 0);
    return false;
  }
  std::string allow = QuestKey(p, g, kSection, "CharCreateAllow");
  if (allow == "0" || allow.empty()) {
    p.MsgBox(kNotUsed, 0);
    return false;
  }
  return true;
}

// The file the player picks in charfile, or nothing when cancelled or blank.
std::optional<std::string> PickCharFile(Program& p, bool save) {
  FileDialog dialog(p.surface(), kForm, "charfile");
  bool answered = save ? p.ShowSave(dialog.id()) : p.ShowOpen(dialog.id());
  if (!answered || dialog.FileName().empty()) return std::nullopt;
  return dialog.FileName();
}

// Every value of the file decoded, or the failure message when one cannot be
// read or the hit points are no number; nothing is shown until all are good.
std::optional<std::array<std::string, 5>> ReadCharFile(Program& p, const std::string& file, std::string& error) {
  std::array<std::string, 5> values;
  for (std::size_t i = 0; i < kFields.size(); ++i) {
    try {
      values[i] = Decode(ReadINI(p, file, kSection, kFields[i].key));
    } catch (const Failure&) {
      error = std::string("The character file is damaged: its ") + kFields[i].label + " cannot be read.";
      return std::nullopt;
    }
  }
  if (!values[1].empty() && !ParseNumber(values[1])) {
    error = "The character file is damaged: its hit points are not a number.";
    return std::nullopt;
  }
  return values;
}

void SaveCharacter(Program& p) {
  GameState g(p);
  if (!QuestUsesCharacter(p, g, "No Quest Loaded; No Character in memory to save!")) return;
  auto file = PickCharFile(p, true);
  if (!file) return;
  std::array<std::string, 5> encoded;
  std::array<QuestStore::Entry, 5> entries;
  for (std::size_t i = 0; i < kFields.size(); ++i) {
    try {
      encoded[i] = Encode((g.*kFields[i].box).Text());
    } catch (const Failure&) {
      p.MsgBox(std::string("The character cannot be saved: its ") + kFields[i].label +
                   " holds a character that cannot be stored.",
               16, "Error Saving Character:");
      return;
    }
    entries[i] = {kSection, kFields[i].key, encoded[i]};
  }
  if (!WriteINIKeys(p, *file, entries))
    p.MsgBox("The character file " + *file + " could not be written.", 16, "Error Saving Character:");
}

// A field goes into the quest up to its first line break. A value decoded
// from a downloaded saved game or character file may hold CR or LF; written
// whole, its other lines would become keys and sections of the player's
// quest. A read of the quest saw only the first line anyway.
std::string FirstLine(std::string text) {
  text.resize(std::min(text.size(), text.find_first_of("\r\n")));
  return text;
}

}  // namespace

bool WriteCharacterToQuest(Program& p, const GameState& g, std::size_t first) {
  std::array<std::string, 5> values;
  std::vector<QuestStore::Entry> entries;
  for (std::size_t i = first; i < kFields.size(); ++i) {
    values[i] = FirstLine((g.*kFields[i].box).Text());
    entries.push_back({kSection, kFields[i].key, values[i]});
  }
  if (WriteINIKeys(p, g.questfil.Caption(), entries)) return true;
  p.Notice("The character could not be written to the quest file " + g.questfil.Caption() + ".");
  return false;
}

void FillHitPoints(const GameState& g) {
  Skip([&] {
    float hp = ToSingle(g.Text5.Text());
    g.HPPlay.SetMax(hp);
    g.HPPlay.SetValue(hp);
  });
}

void frmgame::Command10_Click(Program& p) {
  GameState g(p);
  RollInto(p, g.Text5, 50, 25);
  RollInto(p, g.Text4, 22, 10);
  RollInto(p, g.Text3, 22, 10);
}

void frmgame::Command9_Click(Program& p) {
  GameState g(p);
  WriteCharacterToQuest(p, g);
  FillHitPoints(g);
  PictureBox(p.surface(), kForm, "CharCreate").SetVisible(false);
  CommandButton(p.surface(), kForm, "Command11").SetEnabled(false);
}

void frmgame::Timer3_Timer(Program& p) {
  GameState g(p);
  bool filled = !g.Text6.Text().empty() && !g.Text5.Text().empty() && !g.Text4.Text().empty() &&
                !g.Text3.Text().empty();
  CommandButton(p.surface(), kForm, "Command9").SetEnabled(filled);
}

void frmgame::Command11_Click(Program& p) {
  GameState g(p);
  if (!QuestUsesCharacter(p, g, "No Quest Loaded; No reason to load a character file.")) return;
  auto file = PickCharFile(p, false);
  if (!file) return;
  std::string error;
  auto values = ReadCharFile(p, *file, error);
  if (!values) {
    p.MsgBox(error, 16, "Error Loading Character:");
    return;
  }
  for (std::size_t i = 0; i < kFields.size(); ++i) (g.*kFields[i].box).SetText((*values)[i]);
}

void frmgame::Command3_Click(Program& p) { SaveCharacter(p); }

void frmgame::mnusavechar_Click(Program& p) { SaveCharacter(p); }

void frmgame::Picture5_Click(Program& p) {
  FormSurface& s = p.surface();
  GameState g(p);
  p.PressAnimation(PictureBox(s, kForm, "Picture5").id());
  Image(s, kForm, "Image12").SetVisible(true);
  CommandButton(s, kForm, "Command9").SetVisible(false);
  CommandButton(s, kForm, "Command10").SetVisible(false);
  if (QuestKey(p, g, kSection, "CharLoadAllow") == "0")
    CommandButton(s, kForm, "Command11").SetEnabled(false);
  PictureBox(s, kForm, "CharCreate").SetVisible(true);
}

void frmgame::Image12_Click(Program& p) {
  p.PressAnimation(Image(p.surface(), kForm, "Image12").id());
  PictureBox(p.surface(), kForm, "CharCreate").SetVisible(false);
}

}  // namespace fw
