#include "editor/test_play.h"

#include "editor/createquest.h"
#include "forms/controls.h"
#include "forms/program.h"
#include "play/start_quest.h"

namespace fw {

void editor::TestPlay(Program& p, std::string_view firstPage) {
  FormSurface& s = p.surface();
  // The game view takes the place of the picture menu.
  PictureBox(s, "FrmGame", "Picture2").SetVisible(false);
  FormHandle(s, "FrmGame").Show();
  LoadTmpGame(p, firstPage);
}

void createquest::Command13_Click(Program& p) { editor::TestPlay(p); }

void createquest::Command7_Click(Program& p) { FormHandle(p.surface(), "FrmBattle").Show(); }

void createquest::Command8_Click(Program& p) { FormHandle(p.surface(), "FrmCharCreate").Show(); }

}  // namespace fw
