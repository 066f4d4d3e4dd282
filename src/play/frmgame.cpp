#include "play/frmgame.h"

#include <vector>

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
    {"Text1", Event::Change, Text1_Change},
};

// Fields of the game that no control of the window's design shows. They are
// hidden labels off the form, as questfil and pg are.
constexpr ControlDecl kPlayFields[] = {
    {.name = "Music", .kind = Kind::Label, .left = 11880, .top = 5880, .width = 1215, .height = 375,
     .visible = false},
};

// The window's design with the play fields behind its last control.
const FormDecl& GameTable() {
  static const std::vector<ControlDecl> controls = [] {
    std::vector<ControlDecl> all(kFrmGameTable.controls.begin(), kFrmGameTable.controls.end());
    all.insert(all.end(), std::begin(kPlayFields), std::end(kPlayFields));
    return all;
  }();
  static const FormDecl table = [] {
    FormDecl t = kFrmGameTable;
    t.controls = controls;
    return t;
  }();
  return table;
}

}  // namespace

const FormDef& FrmGameForm() {
  static const FormDef form{&GameTable(), kHandlers};
  return form;
}

}  // namespace fw
