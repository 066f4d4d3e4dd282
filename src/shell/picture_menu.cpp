#include "shell/picture_menu.h"

#include <string_view>

#include "editor/createquest.h"
#include "forms/controls.h"
#include "forms/program.h"
#include "shell/frmgame.h"
#include "shell/game_menus.h"

namespace fw {
namespace {

constexpr const char* kForm = "FrmGame";

void ShowHover(Program& p, std::string_view text) { Label(p.surface(), kForm, "Label2").SetCaption(text); }

}  // namespace

void frmgame::Picture2_MouseMove(Program& p) { ShowHover(p, ""); }
void frmgame::Image1_MouseMove(Program& p) { ShowHover(p, "Load Quest"); }
void frmgame::Image11_MouseMove(Program& p) { ShowHover(p, "New Game"); }
void frmgame::Image2_MouseMove(Program& p) { ShowHover(p, "Load Game"); }
void frmgame::Image5_MouseMove(Program& p) { ShowHover(p, "Resume Game"); }
void frmgame::Image6_MouseMove(Program& p) { ShowHover(p, "Save Game"); }
void frmgame::Image7_MouseMove(Program& p) { ShowHover(p, "About"); }
void frmgame::Image8_MouseMove(Program& p) { ShowHover(p, "Create A Quest"); }
void frmgame::Image9_MouseMove(Program& p) { ShowHover(p, "Credits"); }
void frmgame::Image10_MouseMove(Program& p) { ShowHover(p, "Quit"); }
void frmgame::Label14_MouseMove(Program& p) { ShowHover(p, "Web Site"); }
void frmgame::Label15_MouseMove(Program& p) { ShowHover(p, "Run Auto update"); }

void frmgame::Image7_Click(Program& p) { mnuabout_Click(p); }

void frmgame::Image8_Click(Program& p) { OpenEditor(p); }

void frmgame::mnucreatequest_Click(Program& p) { OpenEditor(p); }

void frmgame::Label14_Click(Program& p) { p.ShellExecute(kWebAddress); }

}  // namespace fw
