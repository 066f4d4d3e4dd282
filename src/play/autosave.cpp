#include "play/autosave.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>

#include "forms/codepage.h"
#include "forms/controls.h"
#include "forms/dialog_folders.h"
#include "forms/program.h"
#include "play/game_state.h"
#include "play/saved_game.h"
#include "play/start_quest.h"
#include "store/program_store.h"

namespace fw {
namespace {

struct AutosaveModule {
  bool pending = false;  // a write is posted and has not run yet
  std::string written;   // what the last write held, and where
};

// FNV-1a: a short, stable name for a path.
std::uint32_t Hash(std::string_view text) {
  std::uint32_t h = 2166136261u;
  for (unsigned char c : text) h = (h ^ c) * 16777619u;
  return h;
}

// The game as the autosave would hold it, to tell whether it changed.
std::string GameOnScreen(Program& p, const std::string& file) {
  GameState g(p);
  std::string all = file;
  for (const std::string* v : {&g.room.Text(), &g.Option1.Caption(), &g.Option2.Caption(), &g.Option3.Caption(),
                               &g.Option4.Caption(), &g.pg.Caption(), &g.score.Caption(), &g.Text6.Text(),
                               &g.Text5.Text(), &g.Text4.Text(), &g.Text3.Text(), &g.Text7.Text()})
    all += '\0' + *v;
  for (int i = 0; i < g.List1.ListCount(); ++i) all += '\1' + g.List1.List(i);
  return all;
}

bool Autosaving(const std::string& quest) { return quest != kNoQuest && !quest.empty() && quest != kTestPlayQuest; }

}  // namespace

std::string AutosavePath(Program& p, std::string_view quest) {
  std::string host = INIHostPath(p, quest);
  char tag[16];
  std::snprintf(tag, sizeof tag, "%08x", static_cast<unsigned>(Hash(host)));
  std::string stem = std::filesystem::path(host).stem().string();
  return SavesFolder(p) + "/" + stem + " (autosave " + tag + ").sav";
}

void ScheduleAutosave(Program& p) {
  AutosaveModule& m = p.Module<AutosaveModule>();
  if (m.pending) return;
  m.pending = true;
  p.Post(p.Now(), [](Program& p) {
    p.Module<AutosaveModule>().pending = false;
    Autosave(p);
  });
}

void Autosave(Program& p) {
  AutosaveModule& m = p.Module<AutosaveModule>();
  std::string quest = GameState(p).questfil.Caption();
  if (!Autosaving(quest)) return;
  std::string file = Cp1252FromUtf8(AutosavePath(p, quest));
  std::string game = GameOnScreen(p, file);
  if (game == m.written) return;
  if (!WriteGameTo(p, file)) {
    p.Notice("The game could not be saved automatically in " + file + ".");
    return;
  }
  m.written = std::move(game);
  std::string questHost = Cp1252FromUtf8(INIHostPath(p, quest));
  if (ReadINI(p, kContinueFile, kContinueSection, "Quest") != questHost ||
      ReadINI(p, kContinueFile, kContinueSection, "Saved Game") != file)
    WriteINIKeys(p, kContinueFile,
                 std::vector<QuestStore::Entry>{{kContinueSection, "Quest", questHost},
                                                {kContinueSection, "Saved Game", file}});
}

std::optional<LastGame> LastAutosave(Program& p) {
  LastGame last{ReadINI(p, kContinueFile, kContinueSection, "Quest"),
                ReadINI(p, kContinueFile, kContinueSection, "Saved Game")};
  FileSystem& files = *p.services().files;
  if (last.quest.empty() || last.save.empty() || !files.Exists(p.HostFile(last.quest)) ||
      !files.Exists(p.HostFile(last.save)))
    return std::nullopt;
  return last;
}

void frmgame::mnucontinue_Click(Program& p) {
  std::optional<LastGame> last = LastAutosave(p);
  if (!last) {
    p.MsgBox("There is no game to continue.", 0);
    return;
  }
  GameState g(p);
  if (g.questfil.Caption() != kNoQuest &&
      p.MsgBox("Are you sure? This will end the current game without saving!", 4, "WARNING!!!!") != 6)
    return;
  ReopenQuest(p, last->quest);
  // The full load, its dialog answered with the autosave.
  p.AnswerNextFileDialog(p.surface().Id("FrmGame", "file"), last->save);
  frmgame::mnuload_Click(p);
}

}  // namespace fw
