#include "play/frmgame.h"

#include "media/midi_api.h"
#include "media/page_media.h"
#include "play/choose_option.h"
#include "play/game_start.h"
#include "play/page_view.h"
#include "play/start_quest.h"

namespace fw {
namespace {

// The window's handlers live in fw::frmgame, since every form has its own
// Form_Load and its own Timer1.
using namespace frmgame;

constexpr HandlerDecl kHandlers[] = {
    {"Form", Event::Load, Form_Load},
    {"Form", Event::Resize, Form_Resize},
    {"Image1", Event::Click, Image1_Click},
    {"Image11", Event::Click, Image11_Click},
    {"mnuloadquest", Event::Click, mnuloadquest_Click},
    {"Picture1", Event::Click, Picture1_Click},
    {"Timer1", Event::Timer, Timer1_Timer},
    {"Timer2", Event::Timer, Timer2_Timer},
    {"Command2", Event::Click, Command2_Click},
    {"Text1", Event::Change, Text1_Change},
};

}  // namespace

const FormDef& FrmGameForm() {
  static const FormDef form{&kFrmGameTable, kHandlers};
  return form;
}

}  // namespace fw
