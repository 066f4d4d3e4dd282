#include "play/game_start.h"

#include <optional>
#include <string>

#include "forms/program.h"
#include "play/game_state.h"
#include "play/quest_paths.h"
#include "play/start_quest.h"
#include "store/program_store.h"

namespace fw {
namespace {

constexpr const char* kForm = "FrmGame";

std::string GameDat(Program& p) { return p.AppPath() + "\\game.dat"; }

// The packaged game's quest file, inside the game folder; "" when this is no
// packaged game.
std::string PackagedQuest(Program& p) {
  return InsideFolder(p, p.AppPath(), ReadINI(p, GameDat(p), "loaddat", "QuestFile"));
}

// A picture of the packaged game's own look, from inside its folder; it keeps
// the name game.dat gives. Fails as LoadPicture does; a blank name or one
// outside the folder gives nothing.
std::optional<Picture> GamePicture(Program& p, const char* key) {
  std::string name = ReadINI(p, GameDat(p), "Image", key);
  std::string path = InsideFolder(p, p.AppPath(), name);
  if (path.empty()) return std::nullopt;
  Picture picture = LoadQuestPicture(p, path, p.AppPath());
  picture.path = name;
  return picture;
}

// A picture that cannot be loaded leaves the old one.
void LoadGameArt(Program& p) {
  Skip([&] {
    if (auto picture = GamePicture(p, "MenuButton")) Image(p.surface(), kForm, "Image4").SetPicture(*picture);
  });
  Skip([&] {
    if (auto picture = GamePicture(p, "Background")) FormHandle(p.surface(), kForm).SetPicture(*picture);
  });
}

// A packaged game shows neither the menu bar nor the authoring parts.
void HideAuthoring(Program& p) {
  FormSurface& s = p.surface();
  for (const char* menu : {"mnufile", "mnugame", "mnuhelp", "mnupdate"}) Menu(s, kForm, menu).SetVisible(false);
  FormHandle(s, kForm).SetCaption(ReadINI(p, GameDat(p), "Game Data", "Title"));
  Image(s, kForm, "Image8").SetVisible(false);
  Image(s, kForm, "Image1").SetVisible(false);
  Label(s, kForm, "Label15").SetVisible(false);
}

}  // namespace

namespace frmgame {

void Form_Load(Program& p) {
  std::string quest = PackagedQuest(p);
  if (quest.empty()) return;
  Image(p.surface(), kForm, "Image11").SetVisible(true);
  LoadGameArt(p);
  HideAuthoring(p);
  GameState(p).questfil.SetCaption(quest);
  StartQuest(p, QuestEntry::PackagedStart);
}

void Image11_Click(Program& p) {
  std::string quest = PackagedQuest(p);
  if (quest.empty()) return;
  GameState g(p);
  g.List1.Clear();
  HideAuthoring(p);
  g.questfil.SetCaption(quest);
  StartQuest(p, QuestEntry::StartImage);
}

void Image1_Click(Program& p) {
  mnuloadquest_Click(p);
  PictureBox(p.surface(), kForm, "Picture2").SetVisible(false);
}

}  // namespace frmgame
}  // namespace fw
