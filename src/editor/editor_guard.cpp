#include "editor/editor_guard.h"

#include <cerrno>
#include <ctime>
#include <string>

#include "editor/createquest.h"
#include "editor/editor_state.h"
#include "editor/page_fields.h"
#include "forms/codepage.h"
#include "forms/program.h"
#include "store/program_store.h"

namespace fw {
namespace {

constexpr const char* kForm = "createquest";
constexpr const char* kAnotherEditor =
    "Another Create 'A' Quest window is already open on this computer, and both would work on the same "
    "unsaved quest data. Save your work there and close it, then open the editor here again.";
constexpr const char* kRecoveryQuestion =
    "The quest editor found work that was not saved when it last closed. Do you want to keep working on it? "
    "If you answer No, a copy of it is kept in the backups folder and the editor starts afresh.";
constexpr const char* kWarning = "WARNING!!!!";

// Where the copies go, as a box names it.
std::string Folder(Program& p) { return Cp1252FromUtf8(BackupsFolder(p)); }

std::string WorkNotKept(Program& p) {
  return "The quest editor could not copy its unsaved work to the backups folder (" + Folder(p) +
         "), so that work stays as it is and nothing is cleared. Save it to a quest file first (File > Save A "
         "Quest File).";
}

std::string QuestNotKept(Program& p) {
  return "The quest editor could not copy the quest as it was to the backups folder (" + Folder(p) +
         ") before replacing it. Do you want to replace it all the same?";
}

// The local time as a backup's name carries it: "2026-11-23 14.50.34".
std::string Stamp() {
  std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%d %H.%M.%S", &local);
  return text;
}

// The lock of this run, taken now if it is free; false while another
// editor holds it. A lock file that cannot be made is no reason to refuse.
bool HoldLock(Program& p) {
  EditorModule& m = p.Module<EditorModule>();
  if (m.lock) return true;
  return TryLockUserFile(p, kEditorLock, m.lock) != EWOULDBLOCK;
}

// A cleared check box, as a mere visit to a page writes it.
bool IsClearedCheck(const ProfileEntry& entry) {
  if (entry.value != "0") return false;
  for (const Binding& b : kBindings)
    if (b.check && entry.key == b.key) return true;
  return false;
}

// Whether a working file's text holds more than a fresh one: a value
// anywhere, or pages counted beyond the first.
bool HoldsWork(const std::string& text) {
  for (const ProfileEntry& entry : ProfileEntries(text)) {
    if (entry.section == kQuestData && entry.key == kNumberOfPages) {
      if (entry.value != "" && entry.value != "0" && entry.value != "1") return true;
    } else if (!entry.value.empty() && !IsClearedCheck(entry)) {
      return true;
    }
  }
  return false;
}

bool WorkingFileHoldsWork(Program& p) {
  auto text = ReadINIText(p, kWorkingFile);
  return text && HoldsWork(*text);
}

}  // namespace

bool editor::TakeOrRefuseLock(Program& p) {
  EditorModule& m = p.Module<EditorModule>();
  m.lockedOut = !HoldLock(p);
  if (!m.lockedOut) return true;
  p.MsgBox(kAnotherEditor);
  p.Post(p.Now(), [](Program& p) {
    FormSurface& s = p.surface();
    s.Unload(s.FindForm(kForm), false);
  });
  return false;
}

bool editor::OfferRecovery(Program& p) {
  if (!WorkingFileHoldsWork(p)) return false;
  // A No whose copy can't be made opens on the work all the same.
  if (p.MsgBox(kRecoveryQuestion, 4, kWarning) != 6 && KeepWorkingFile(p)) return false;
  p.Module<EditorModule>().recovered = true;
  EditorState e(p);
  Skip([&] { RebuildPageList(p); });
  if (e.pg.ListCount() > 0) Skip([&] { e.pg.SetSelected(0, true); });
  TellOfNoPages(p);
  return true;
}

bool editor::KeepWorkingFile(Program& p) {
  if (!WorkingFileHoldsWork(p) || KeepBackup(p, DeriveWorkingPath(p), Stamp())) return true;
  p.MsgBox(WorkNotKept(p), 16);
  return false;
}

bool editor::KeepQuestBeforeSave(Program& p, const std::string& working, const std::string& quest) {
  auto old = ReadINIText(p, quest);
  // A save of what the quest already holds replaces nothing worth keeping.
  if (!old || old == ReadINIText(p, working) || KeepBackup(p, quest, Stamp())) return true;
  return p.MsgBox(QuestNotKept(p), 4, kWarning) == 6;
}

void OpenEditor(Program& p) {
  FormSurface& s = p.surface();
  int form = s.FindForm(kForm);
  if (!s.IsLoaded(form) && !HoldLock(p)) {
    p.MsgBox(kAnotherEditor);
    return;
  }
  FormHandle(s, kForm).Show();
}

bool OpenEditorOn(Program& p, std::string_view quest) {
  OpenEditor(p);
  FormSurface& s = p.surface();
  if (!s.IsLoaded(s.FindForm(kForm)) || p.Module<EditorModule>().lockedOut) return false;
  // The author chose the work left by an earlier run over the quest named.
  if (p.Module<EditorModule>().recovered) return true;
  EditorState e(p);
  e.questfile.SetFileName(quest);
  return editor::LoadQuestFile(p, std::string(quest));
}

}  // namespace fw
