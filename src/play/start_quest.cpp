#include "play/start_quest.h"

#include <string>

#include "forms/program.h"
#include "play/battle_hooks.h"
#include "play/game_state.h"
#include "play/page_keys.h"
#include "play/page_media.h"
#include "play/page_rules.h"
#include "play/show_page.h"
#include "play/transcript.h"
#include "play/undo.h"

namespace fw {
namespace {

constexpr const char* kDashes = "-----------------------------------------------------";
constexpr float kGameHeight = 6600;  // twips

// The character panel opens in create mode when the quest asks for a
// character. Only a fresh load also shows the experience bar.
void OpenCharacterPanel(Program& p, const GameState& g, QuestEntry entry) {
  if (!AsksForCharacter(QuestKey(p, g, "CharacterData", "CharCreateAllow"))) return;
  FormSurface& s = p.surface();
  g.Text6.SetText(QuestKey(p, g, "CharacterData", "CharName"));
  // Re-Roll draws the first character.
  Skip([&] { frmgame::Command10_Click(p); });
  PictureBox(s, "FrmGame", "CharCreate").SetVisible(true);
  g.HPPlay.SetVisible(true);
  Label(s, "FrmGame", "Label8").SetVisible(true);
  if (entry != QuestEntry::LoadQuestFile) return;
  g.exp.SetVisible(true);
  Label(s, "FrmGame", "Label9").SetVisible(true);
  g.exp.SetValue(0);
}

void WriteBanner(Program& p, const GameState& g) {
  AppendLine(g, QuestKey(p, g, "Story Info", "Title"));
  AppendLine(g, kDashes);
  AppendLine(g, QuestKey(p, g, "Story Info", "Author"));
  AppendLine(g, "Version: " + QuestKey(p, g, "Story Info", "Version"));
  AppendLine(g, kDashes);
}

// The first page into the transcript and the page fields.
void EnterFirstPage(Program& p, const GameState& g, const std::string& first) {
  AppendBlock(g, QuestKey(p, g, first, "Location"));
  AppendBlock(g, QuestKey(p, g, first, "Page Text"));
  g.room.SetText(QuestKey(p, g, first, "Page Text"));
  g.pg.SetCaption(first);
  for (int n = 1; n <= 4; ++n) g.Option(n).SetCaption(QuestKey(p, g, first, KeysOf(n).text));
  g.score.SetCaption("0");
}

// The test play runs no page show: no gating, no battle, the selection kept,
// the picture menu left alone. Only the media steps.
void ShowTestPage(Program& p, const GameState& g) {
  Skip([&] { PageImageStep(p, g); });
  Skip([&] { PageMovieStep(p, g, PageCaller::TestPlay); });
  Skip([&] { PageAudioStep(p, g, PageCaller::TestPlay); });
}

}  // namespace

void StartQuest(Program& p, QuestEntry entry, std::string_view firstPage) {
  GameState g(p);
  ForgetSteps(p);
  if (entry == QuestEntry::PackagedStart || entry == QuestEntry::LoadQuestFile) OpenCharacterPanel(p, g, entry);
  WriteBanner(p, g);
  EnterFirstPage(p, g, std::string(firstPage));
  switch (entry) {
    case QuestEntry::PackagedStart: ShowPage(p, PageCaller::PackagedStart); break;
    case QuestEntry::StartImage: ShowPage(p, PageCaller::StartImage); break;
    case QuestEntry::LoadQuestFile: ShowPage(p, PageCaller::LoadQuestFile); break;
    case QuestEntry::TmpGame: ShowTestPage(p, g); break;
  }
  if (entry == QuestEntry::PackagedStart || entry == QuestEntry::StartImage)
    FormHandle(p.surface(), "FrmGame").SetHeight(kGameHeight);
}

void LoadTmpGame(Program& p, std::string_view firstPage) {
  GameState g(p);
  FileDialog(p.surface(), "FrmGame", "questfile").SetInitDir(p.AppPath());
  g.questfil.SetCaption(kTestPlayQuest);
  g.List1.Clear();
  StartQuest(p, QuestEntry::TmpGame, firstPage);
}

void OpenQuestNamed(Program& p, std::string_view path) {
  FormSurface& s = p.surface();
  p.AnswerNextFileDialog(s.Id("FrmGame", "questfile"), std::string(path));
  s.Raise(s.Id("FrmGame", "Image1"), Event::Click);
}

void frmgame::mnuloadquest_Click(Program& p) {
  GameState g(p);
  FileDialog questfile(p.surface(), "FrmGame", "questfile");
  questfile.SetInitDir(p.AppPath());
  if (g.questfil.Caption() != kNoQuest &&
      p.MsgBox("Are you sure? This will end the current game without saving!", 4, "WARNING!!!!") != 6)
    return;
  questfile.SetFileName("");
  p.ShowOpen(questfile.id());
  g.questfil.SetCaption(questfile.FileName());
  // A cancelled dialog leaves questfil blank and the screen as it stood.
  if (g.questfil.Caption().empty()) return;
  g.List1.Clear();
  StartQuest(p, QuestEntry::LoadQuestFile);
}

void frmgame::mnurestart_Click(Program& p) {
  GameState g(p);
  if (g.questfil.Caption() == kNoQuest) {
    p.MsgBox("You must load a quest file before you can restart it!", 0);
    return;
  }
  if (p.MsgBox("Start this quest again from its first page? The current game ends without saving.", 4,
               "Restart Quest") != 6)
    return;
  ReopenQuest(p, g.questfil.Caption());
}

void ReopenQuest(Program& p, std::string_view quest) {
  GameState g(p);
  FileDialog questfile(p.surface(), "FrmGame", "questfile");
  questfile.SetInitDir(p.AppPath());
  questfile.SetFileName(quest);
  g.questfil.SetCaption(questfile.FileName());
  g.List1.Clear();
  StartQuest(p, QuestEntry::LoadQuestFile);
}

}  // namespace fw
