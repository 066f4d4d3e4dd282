// The working file's lifecycle: a fresh file at the editor's first opening,
// and the menu's New, Load, Save, Exit and Compile, and the window's close.
#include <string>

#include "editor/createquest.h"
#include "editor/editor_guard.h"
#include "editor/editor_state.h"
#include "editor/page_fields.h"
#include "forms/convert.h"
#include "forms/failure.h"
#include "forms/program.h"
#include "store/program_store.h"

namespace fw {
namespace {

constexpr const char* kForm = "createquest";
constexpr const char* kWarning = "WARNING!!!!";
constexpr const char* kNewQuestion =
    "Are you sure you want to clear the previous quest data? Please make sure you saved what you worked on first!";
constexpr const char* kCloseQuestion =
    "Are you sure you want to Close create A' Quest? Please make sure you saved what you worked on first!";
constexpr const char* kCompileFirst =
    "You must load a quest file into memory first. If you were working on a quest file, save it to your hard "
    "disk and click compile again, because that file is needed by the compiler.";
constexpr const char* kError = "Error!";
constexpr const char* kNoPages =
    "This quest's Number Of Pages is below zero, so its page list is empty and what you type in the page fields "
    "is kept nowhere. Click Add Page, then the new page, before you type.";

// New clears these, in this order; the media fields and check boxes keep
// what they show until a page is selected.
constexpr const char* kClearedByNew[] = {"Text1",  "Text2",  "Text3",  "Text4",  "Text5",  "Text6",
                                         "Text7",  "Text8",  "Text9",  "Text10", "Text11", "Text12",
                                         "Text13", "Text14", "Text15", "Text16", "Text17"};

void WritePageCount(Program& p, const EditorState& e) {
  WriteINI(p, kWorkingFile, kQuestData, kNumberOfPages, std::to_string(e.pg.ListCount()));
}

}  // namespace

std::string DeriveWorkingPath(Program& p) {
  // The per-user folder's name comes without padding here, so it needs no
  // round trip through a scratch file to be cleaned.
  std::string dir = p.GetWindowsDir();
  while (dir.ends_with('\\')) dir.pop_back();
  return dir + "\\" + kWorkingFile;
}

void RebuildPageList(Program& p) {
  EditorState e(p);
  // Nothing writes the count while the list is rebuilt, so one read serves
  // every round of the comparison.
  double wanted = ToDouble(ReadINI(p, kWorkingFile, kQuestData, kNumberOfPages));
  // A count between two whole numbers could never be met.
  if (wanted != RoundHalfEven(wanted)) throw Failure("Type mismatch");
  while (e.pg.ListCount() != wanted) {
    int count = e.pg.ListCount();
    if (count > wanted) {
      e.pg.RemoveItem(count - 1);  // fails on an empty list: a count below zero
    } else {
      if (count >= kMostPages) throw Failure("Overflow");
      e.pg.AddItem(std::to_string(count + 1));
    }
  }
}

void createquest::Form_Load(Program& p) {
  FormSurface& s = p.surface();
  if (s.FindForm("FrmGame") >= 0)
    Skip([&] { FormHandle(s, kForm).SetIcon(FormHandle(s, "FrmGame").Icon()); });
  if (!editor::TakeOrRefuseLock(p)) return;
  if (editor::OfferRecovery(p)) return;
  EditorState e(p);
  Skip([&] { p.Kill(DeriveWorkingPath(p)); });
  Skip([&] { e.pg.SetSelected(0, true); });
  Skip([&] { WritePageCount(p, e); });
}

void createquest::mnunew_Click(Program& p) {
  if (p.MsgBox(kNewQuestion, 4, kWarning) != 6) return;
  // The copy is made while the work is whole: clearing the story fields
  // below writes into it.
  if (!editor::KeepWorkingFile(p)) return;
  EditorState e(p);
  Skip([&] { e.pg.Clear(); });
  for (const char* name : kClearedByNew) Skip([&] { TextBox(p.surface(), kForm, name).SetText(""); });
  Skip([&] { e.filepath.SetCaption(""); });
  std::string working = DeriveWorkingPath(p);
  Skip([&] { p.Kill(working); });
  Skip([&] { e.pg.SetSelected(0, true); });
  Skip([&] { WritePageCount(p, e); });
}

bool editor::LoadQuestFile(Program& p, const std::string& quest) {
  if (!editor::KeepWorkingFile(p)) return false;
  EditorState e(p);
  bool loaded = true;
  try {
    if (!CopyProfileFile(p, quest, DeriveWorkingPath(p))) throw Failure("File not found");
    e.filepath.SetCaption(quest);
    createquest::pg_Click(p);
    RebuildPageList(p);
  } catch (const Failure&) {
    p.MsgBox(kError);
    loaded = false;
  }
  editor::TellOfNoPages(p);
  return loaded;
}

void editor::TellOfNoPages(Program& p) {
  if (EditorState(p).pg.ListCount() > 0) return;
  // A count of 0 is an empty quest, as New leaves it: its empty list is no surprise.
  double count = 0;
  Skip([&] { count = ToDouble(ReadINI(p, kWorkingFile, kQuestData, kNumberOfPages)); });
  if (count < 0) p.MsgBox(kNoPages, 64);
}

void createquest::mnuloadquest_Click(Program& p) {
  EditorState e(p);
  e.questfile.SetInitDir(p.AppPath());
  if (!p.ShowOpen(e.questfile.id()) || e.questfile.FileName().empty()) return;
  editor::LoadQuestFile(p, e.questfile.FileName());
}

void createquest::mnusave_Click(Program& p) {
  EditorState e(p);
  e.questfile.SetInitDir(p.AppPath());
  if (!p.ShowSave(e.questfile.id()) || e.questfile.FileName().empty()) return;
  const std::string quest = e.questfile.FileName();
  const std::string working = DeriveWorkingPath(p);
  if (!editor::KeepQuestBeforeSave(p, working, quest)) return;
  if (!CopyProfileFile(p, working, quest)) {
    p.MsgBox(kError);
    return;
  }
  e.filepath.SetCaption(quest);
}

void createquest::mnuexit_Click(Program& p) { FormHandle(p.surface(), kForm).Hide(); }

void createquest::mnucompile_Click(Program& p) {
  EditorState e(p);
  if (e.questfile.FileName().empty()) p.MsgBox(kCompileFirst);
  else FormHandle(p.surface(), "FrmCompile").Show();
}

void createquest::Form_QueryUnload(Program& p, bool& cancel) {
  // An editor that found another one running holds nothing and may go.
  if (p.Module<EditorModule>().lockedOut) return;
  cancel = true;
  EditorState e(p);
  if (!e.filepath.Caption().empty() && p.MsgBox(kCloseQuestion, 4, kWarning) != 6) return;
  FormHandle(p.surface(), kForm).Hide();
}

}  // namespace fw
