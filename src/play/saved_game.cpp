#include "play/saved_game.h"

#include <ctime>
#include <string_view>

#include "forms/convert.h"
#include "forms/program.h"
#include "media/midi_api.h"
#include "play/character.h"
#include "play/game_state.h"
#include "play/page_keys.h"
#include "play/quest_paths.h"
#include "play/undo.h"
#include "store/program_store.h"
#include "store/records.h"
#include "store/scrambler.h"

namespace fw {
namespace {

constexpr const char* kForm = "FrmGame";

FileDialog SaveDialog(Program& p) { return FileDialog(p.surface(), kForm, "file"); }

// One append: the command's result and then the page text again.
void TranscriptEntry(Program& p, const GameState& g, const std::string& result) {
  g.Text1.SetText(g.Text1.Text() + "\r\n>\r\nGame: " + SaveDialog(p).FileName() + "\r\n" + result + "\r\n>\r\n" +
                  g.room.Text());
}

// The values of the record layout, from the screen, in writing order.
std::vector<std::string> ScreenValues(const GameState& g) {
  return {g.room.Text(),           g.Option1.Caption(), g.Option2.Caption(), g.Option3.Caption(),
          g.Option4.Caption(),     g.pg.Caption(),      g.score.Caption(),   std::to_string(g.List1.ListCount()),
          g.Text6.Text(),          g.Text5.Text(),      g.Text4.Text(),      g.Text3.Text(),
          g.Text7.Text()};
}

// Every value as it goes into the file, or the key of the first that cannot
// be scrambled.
bool EncodeAll(std::vector<std::string>& values, std::string& badKey) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (!kSavedGameKeys[i].scrambled) continue;
    try {
      values[i] = Encode(values[i]);
    } catch (const Failure&) {
      badKey = kSavedGameKeys[i].key;
      return false;
    }
  }
  return true;
}

// The whole save goes to disk as one change, over the old file: keys this
// save does not write stay, as the format asks, and a save that fails
// leaves the old file whole.
bool WriteSave(Program& p, const GameState& g, const std::string& target, const std::vector<std::string>& values) {
  std::vector<QuestStore::Entry> entries;
  for (std::size_t i = 0; i < values.size(); ++i)
    entries.push_back({kSavedGameKeys[i].section, kSavedGameKeys[i].key, values[i]});
  // The item entries point into these, which are sized once and never grow.
  std::vector<std::string> keys, items;
  keys.reserve(g.List1.ListCount());
  items.reserve(g.List1.ListCount());
  for (int i = 0; i < g.List1.ListCount(); ++i) {
    std::string item = g.List1.List(i);
    if (item.empty()) continue;
    keys.push_back(std::to_string(i));
    items.push_back(std::move(item));
    entries.push_back({kListDataSection, keys.back(), items.back()});
  }
  return WriteINIKeys(p, target, entries);
}

// The local time as a saved game's proposed name carries it: "2026-11-25 14.05".
std::string Stamp() {
  std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%d %H.%M", &local);
  return text;
}

// A name part without the characters a file name cannot hold everywhere.
std::string NamePart(std::string text) {
  for (char& c : text)
    if (std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos || static_cast<unsigned char>(c) < 32) c = '-';
  return text;
}

}  // namespace

std::string ProposedSaveName(Program& p) {
  GameState g(p);
  std::string name;
  for (std::string part : {QuestKey(p, g, "Story Info", "Title"), CurrentLocation(p), Stamp()}) {
    part = NamePart(part);
    if (part.empty()) continue;
    if (!name.empty()) name += " - ";
    name += part;
  }
  return name + ".sav";
}

namespace {

// The file the player picks, after the start-of-command checks; nullopt
// when the command ends there.
std::optional<std::string> PickSave(Program& p, bool save) {
  FileDialog dialog = SaveDialog(p);
  bool answered = save ? p.ShowSave(dialog.id()) : p.ShowOpen(dialog.id());
  if (!answered || dialog.FileName().empty()) return std::nullopt;
  return dialog.FileName();
}

// The checks and the file of a load, or nullopt after the refusal.
std::optional<SavedGame> OpenSave(Program& p, const GameState& g, SaveRead what) {
  SaveDialog(p).SetInitDir(p.AppPath());
  if (g.questfil.Caption() == kNoQuest) {
    p.MsgBox("You must load a quest file before attempting to load a saved game!", 0);
    return std::nullopt;
  }
  auto file = PickSave(p, false);
  if (!file) return std::nullopt;
  auto saved = ReadSavedGame(p, *file, what);
  if (!saved) {
    p.MsgBox("The file does not appear to be a saved game for this particular game or there is an error in the file.",
             16, "Error Loading Game:");
    TranscriptEntry(p, g, "Is corrupt or not for this game! :-(");
  }
  return saved;
}

void RestorePage(const GameState& g, const SavedGame& s) {
  g.room.SetText(s.room);
  for (int n = 1; n <= 4; ++n) g.Option(n).SetCaption(s.options[n - 1]);
  g.score.SetCaption(s.score);
  g.pg.SetCaption(s.page);
}

void RestoreCharacter(Program& p, const GameState& g, const SavedGame& s) {
  g.Text6.SetText(s.name);
  g.Text5.SetText(s.hp);
  g.Text4.SetText(s.attack);
  g.Text3.SetText(s.defence);
  g.Text7.SetText(s.level);
  WriteCharacterToQuest(p, g);
  // A save of a quest without a character has no hit points: the gauge stays.
  FillHitPoints(g);
}

// The tune and picture of the loaded page; its track and movie do not start.
void LoadMedia(Program& p, const GameState& g) {
  Skip([&] { MidiClose(p); });
  Skip([&] { MidiUnhook(p); });
  Skip([&] {
    std::string image = PageKey(p, g, "Image");
    if (!image.empty()) g.PicWindow.SetPicture(LoadQuestPicture(p, image, QuestFolder(p, g.questfil.Caption())));
  });
  Skip([&] { g.Music.SetCaption(PageKey(p, g, "Music")); });
  Skip([&] {
    std::string music = g.Music.Caption();
    if (!music.empty()) music = FindQuestFile(p, music, QuestFolder(p, g.questfil.Caption()));
    StartMidi(p, music, false, FormHandle(p.surface(), kForm).hWnd());
  });
}

void FinishLoad(Program& p, const GameState& g) {
  ForgetSteps(p);
  TranscriptEntry(p, g, "Loaded Successfully.");
  LoadMedia(p, g);
  SaveDialog(p).SetFileName("");
}

}  // namespace

bool WriteGameTo(Program& p, const std::string& file) {
  GameState g(p);
  std::vector<std::string> values = ScreenValues(g);
  std::string badKey;
  return EncodeAll(values, badKey) && WriteSave(p, g, file, values);
}

void frmgame::mnusave_Click(Program& p) {
  GameState g(p);
  if (g.questfil.Caption() == kNoQuest) {
    p.MsgBox("You must load a quest file before attempting to save a game!", 0);
    return;
  }
  SaveDialog(p).SetInitDir(p.AppPath());
  SaveDialog(p).SetFileName(ProposedSaveName(p));
  auto file = PickSave(p, true);
  if (!file) return;
  std::vector<std::string> values = ScreenValues(g);
  std::string badKey;
  if (!EncodeAll(values, badKey)) {
    p.MsgBox("The game cannot be saved: the value of " + badKey + " holds a character that cannot be stored.", 16,
             "Error Saving Game:");
    return;
  }
  if (!WriteSave(p, g, *file, values)) {
    p.MsgBox("The saved game " + *file + " could not be written.", 16, "Error Saving Game:");
    return;
  }
  TranscriptEntry(p, g, "Saved Successfully.");
}

void frmgame::Image6_Click(Program& p) { mnusave_Click(p); }

void frmgame::mnuload_Click(Program& p) {
  GameState g(p);
  auto saved = OpenSave(p, g, SaveRead::Whole);
  if (!saved) return;
  RestoreCharacter(p, g, *saved);
  RestorePage(g, *saved);
  for (const std::string& item : saved->items) g.List1.AddItem(item);
  FinishLoad(p, g);
}

void frmgame::Image2_Click(Program& p) {
  GameState g(p);
  auto saved = OpenSave(p, g, SaveRead::Page);
  if (!saved) return;
  RestorePage(g, *saved);
  FinishLoad(p, g);
  PictureBox(p.surface(), kForm, "Picture2").SetVisible(false);
}

}  // namespace fw
