#include "shell/frmgame.h"

#include "media/midi_api.h"
#include "media/page_media.h"
#include "play/autosave.h"
#include "play/battle.h"
#include "play/battle_hooks.h"
#include "play/character.h"
#include "play/choose_option.h"
#include "play/game_start.h"
#include "play/page_view.h"
#include "play/saved_game.h"
#include "play/start_quest.h"
#include "play/transcript.h"
#include "play/undo.h"
#include "shell/credits.h"
#include "shell/game_menus.h"
#include "shell/game_panels.h"
#include "shell/picture_menu.h"

namespace fw {
namespace {

// The window's handlers live in fw::frmgame, since every form has its own
// Form_Load and its own Timer1. The player's steps are recorded for Undo.
using namespace frmgame;

constexpr HandlerDecl kHandlers[] = {
    {"Form", Event::Load, Form_Load},
    {"Form", Event::Resize, Form_Resize},
    {"Image1", Event::Click, Image1_Click},
    {"Image11", Event::Click, Image11_Click},
    {"mnuloadquest", Event::Click, mnuloadquest_Click},
    {"Picture1", Event::Click, Undoable<Picture1_Click>},
    {"Timer1", Event::Timer, Timer1_Timer},
    {"Timer2", Event::Timer, Timer2_Timer},
    {"Command2", Event::Click, Command2_Click},
    {"Text1", Event::Change, Text1_Change},
    {"Command10", Event::Click, Undoable<Command10_Click>},
    {"Command9", Event::Click, Undoable<Command9_Click>},
    {"Timer3", Event::Timer, Timer3_Timer},
    {"Command11", Event::Click, Command11_Click},
    {"Command3", Event::Click, Command3_Click},
    {"mnusavechar", Event::Click, mnusavechar_Click},
    {"Picture5", Event::Click, Picture5_Click},
    {"Image12", Event::Click, Image12_Click},
    {"Picture7", Event::Click, Undoable<Picture7_Click>},
    {"Picture8", Event::Click, Undoable<Picture8_Click>},
    {"mnusave", Event::Click, mnusave_Click},
    {"Image6", Event::Click, Image6_Click},
    {"mnuload", Event::Click, mnuload_Click},
    {"Image2", Event::Click, Image2_Click},
    {"Image4", Event::Click, Image4_Click},
    {"Image5", Event::Click, Image5_Click},
    {"Picture3", Event::Click, Picture3_Click},
    {"Command6", Event::Click, Command6_Click},
    {"Picture6", Event::Click, Picture6_Click},
    {"mnuexit", Event::Click, mnuexit_Click},
    {"Image10", Event::Click, Image10_Click},
    {"Form", Event::QueryUnload, Form_QueryUnload},
    {"mnuabout", Event::Click, mnuabout_Click},
    {"Image7", Event::Click, Image7_Click},
    {"Image8", Event::Click, Image8_Click},
    {"mnuauto", Event::Click, mnuauto_Click},
    {"Label15", Event::Click, Label15_Click},
    {"Label14", Event::Click, Label14_Click},
    {"mnunew", Event::Click, mnunew_Click},
    {"mnucredits", Event::Click, mnucredits_Click},
    {"Image9", Event::Click, Image9_Click},
    {"Timer4", Event::Timer, Timer4_Timer},
    {"Picture2", Event::MouseMove, Picture2_MouseMove},
    {"Image1", Event::MouseMove, Image1_MouseMove},
    {"Image11", Event::MouseMove, Image11_MouseMove},
    {"Image2", Event::MouseMove, Image2_MouseMove},
    {"Image5", Event::MouseMove, Image5_MouseMove},
    {"Image6", Event::MouseMove, Image6_MouseMove},
    {"Image7", Event::MouseMove, Image7_MouseMove},
    {"Image8", Event::MouseMove, Image8_MouseMove},
    {"Image9", Event::MouseMove, Image9_MouseMove},
    {"Image10", Event::MouseMove, Image10_MouseMove},
    {"Label14", Event::MouseMove, Label14_MouseMove},
    {"Label15", Event::MouseMove, Label15_MouseMove},
    {"mnucreatequest", Event::Click, mnucreatequest_Click},
    {"mnuundo", Event::Click, mnuundo_Click},
    {"mnurestart", Event::Click, mnurestart_Click},
    {"mnucontinue", Event::Click, mnucontinue_Click},
    {"mnutranscript", Event::Click, mnutranscript_Click},
};

}  // namespace

const FormDef& FrmGameForm() {
  static const FormDef form{&kFrmGameTable, kHandlers};
  return form;
}

}  // namespace fw
