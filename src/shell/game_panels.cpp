#include "shell/game_panels.h"

#include "forms/controls.h"
#include "forms/program.h"

namespace fw {
namespace {

constexpr const char* kForm = "FrmGame";

// Shows or hides one of the game window's panels.
void SetPanel(Program& p, const char* panel, bool shown) {
  PictureBox(p.surface(), kForm, panel).SetVisible(shown);
}

// The press of an image button, then its effect on a panel.
void PressThenSetPanel(Program& p, const char* button, const char* panel, bool shown) {
  p.PressAnimation(p.surface().Id(kForm, button));
  SetPanel(p, panel, shown);
}

}  // namespace

void frmgame::Image4_Click(Program& p) { PressThenSetPanel(p, "Image4", "Picture2", true); }

void frmgame::Image5_Click(Program& p) { SetPanel(p, "Picture2", false); }

void frmgame::Picture3_Click(Program& p) { PressThenSetPanel(p, "Picture3", "InvBox", true); }

void frmgame::Command6_Click(Program& p) { SetPanel(p, "InvBox", true); }

void frmgame::Picture6_Click(Program& p) { PressThenSetPanel(p, "Picture6", "InvBox", false); }

void frmgame::mnuexit_Click(Program& p) { p.surface().Unload(p.surface().FindForm(kForm), false); }

void frmgame::Image10_Click(Program& p) { mnuexit_Click(p); }

}  // namespace fw
