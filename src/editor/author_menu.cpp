#include "editor/author_menu.h"

#include "editor/editor_state.h"
#include "editor/test_play.h"
#include "forms/program.h"
#include "play/undo.h"
#include "store/program_store.h"

namespace fw {

bool SelectEditorPage(Program& p, std::string_view page) {
  EditorState e(p);
  for (int i = 0; i < e.pg.ListCount(); ++i) {
    if (e.pg.List(i) != page) continue;
    e.pg.SetSelected(i, true);
    return true;
  }
  return false;
}

// Each tool reads the working file as it stands at the click, so that what
// the author typed a moment ago is in it.
void createquest::mnuquestmap_Click(Program& p) {
  DrawQuestMap(p);
  FormHandle(p.surface(), "FrmQuestMap").Show();
}

void createquest::mnucheckquest_Click(Program& p) {
  ListFindings(p);
  FormHandle(p.surface(), "FrmFindings").Show();
}

void createquest::mnuexplorequest_Click(Program& p) {
  WriteExploreReport(p);
  FormHandle(p.surface(), "FrmExplore").Show();
}

void createquest::mnutestfrompage_Click(Program& p) {
  std::string page = EditorState(p).SelectedPage();
  if (page.empty()) {
    p.MsgBox("Select the page to start from in the page list first.");
    return;
  }
  editor::TestPlay(p, page);
}

void createquest::mnuundoswitch_Click(Program& p) {
  bool off = ReadINI(p, kWorkingFile, "Story Info", kNoUndoKey) == "1";
  WriteINI(p, kWorkingFile, "Story Info", kNoUndoKey, off ? "0" : "1");
  p.MsgBox(off ? "Players of this quest may now undo their steps (Game > Undo)."
               : "Players of this quest can no longer undo their steps.",
           64, "Undo");
}

}  // namespace fw
