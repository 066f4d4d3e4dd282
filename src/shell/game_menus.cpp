#include "shell/game_menus.h"

#include "forms/controls.h"
#include "forms/failure.h"
#include "forms/program.h"
#include "media/midi_api.h"
#include "shell/frmgame.h"

namespace fw {
namespace {

constexpr const char* kForm = "FrmGame";
constexpr const char* kNoQuest = "No Quest Loaded.";
constexpr const char* kUpdateProgram = "autoupdate.exe";

void AutoUpdate(Program& p) {
  if (p.MsgBox("CLOSE Fablewright and run auto update?", 4, "WARNING!!!!") != 6) return;
  try {
    p.Shell({AutoUpdateProgram(p)}, 3);
  } catch (const Failure&) {
    p.MsgBox("Could not locate the autoupdate.exe!", 0);
    return;
  }
  // The update replaces this program's files: no question, no music stop.
  p.End();
}

}  // namespace

std::string AboutText() {
  return std::string("Fablewright 2004\r\n") + "Using Fablewright Game Engine Build V5.9\r\n" +
         "If you are reading this you are probably bored and decided to check what the about box said.\r\n\r\n" +
         "If you are creating a quest for the game or for any reason would like to contact the creator feel free "
         "to e-mail me at: \r\n\r\n" +
         "E-Mail: " + kContactAddress;
}

std::string AutoUpdateProgram(Program& p) {
  std::string beside = p.AppPath() + "\\" + kUpdateProgram;
  std::string host = p.HostFile(beside);
  if (p.services().files->Exists(host) && !p.services().files->IsDirectory(host)) return beside;
  return kUpdateProgram;
}

void frmgame::Form_QueryUnload(Program& p, bool& cancel) {
  // Every way out of here that does not end the program keeps the window.
  cancel = true;
  FormSurface& s = p.surface();
  if (Label(s, kForm, "questfil").Caption() == kNoQuest) {
    Command2_Click(p);
    p.End();
  }
  if (p.MsgBox("Are you sure? This will end the current game without saving!", 4, "WARNING!!!!") != 6) return;
  Command2_Click(p);
  p.Pause(0.2);
  FormHandle(s, kForm).Unload();
  p.End();
}

void frmgame::mnuabout_Click(Program& p) { p.MsgBox(AboutText(), 64, "About:"); }

void frmgame::mnuauto_Click(Program& p) { AutoUpdate(p); }

void frmgame::Label15_Click(Program& p) { AutoUpdate(p); }

void frmgame::mnunew_Click(Program& p) { FormHandle(p.surface(), "FrmUpdates").Show(); }

}  // namespace fw
