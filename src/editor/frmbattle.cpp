// The battle window: each field is one key of the page selected in the
// editor, written at every change, and the window follows the editor's
// page list wherever it goes.
#include "editor/frmbattle.h"

#include <string>

#include "editor/editor_pickers.h"
#include "editor/page_fields.h"
#include "forms/controls.h"
#include "forms/convert.h"
#include "forms/program.h"

namespace fw {
namespace {

using namespace frmbattle;

constexpr const char* kForm = "FrmBattle";

struct BattleField {
  const char* control;
  const char* key;
};

// The text fields in the order a page is read into them, after the tune and
// the picture.
constexpr BattleField kLateFields[] = {
    {"Text1", "BattleMonName"}, {"Text10", "BattleLose"},      {"Text11", "BattleEscape"},
    {"Text12", "ATKMessage"},   {"Text13", "AltAtk"},          {"Text14", "AltAtkDam"},
    {"Text15", "BattleMp3"},    {"Text2", "BattleMonHp"},      {"Text3", "BattleMonAtk"},
    {"Text4", "BattleMonDef"},  {"Text7", "BattleMonKeyItem"}, {"Text8", "BattleMonExp"},
    {"Text9", "BattleWin"},
};
constexpr BattleField kMusic{"Text6", "BattleMusic"};
constexpr BattleField kImage{"Text5", "BattleImage"};
constexpr const char* kEscapeCheck = "BattleEscapecheck";

const char* KeyOf(std::string_view control) {
  if (control == kMusic.control) return kMusic.key;
  if (control == kImage.control) return kImage.key;
  for (const BattleField& f : kLateFields)
    if (control == f.control) return f.key;
  return "";
}

TextBox Box(Program& p, const char* name) { return TextBox(p.surface(), kForm, name); }

void ReadBox(Program& p, const std::string& page, const BattleField& f) {
  Skip([&] { Box(p, f.control).SetText(ReadBound(p, page, f.key)); });
}

// A page's battle keys into the fields. A first load keeps the table's
// drawing where the page names no picture; following a page shows the
// editor's icon there instead. An empty or unreadable escape flag leaves
// the box as the page before left it.
void ReadPage(Program& p, bool following) {
  FormSurface& s = p.surface();
  const std::string page = SelectedPage(p);
  CheckBox check(s, kForm, "Check1");
  Skip([&] { check.SetValue(ToInt16(ReadBound(p, page, kEscapeCheck))); });
  ReadBox(p, page, kMusic);
  ReadBox(p, page, kImage);
  Image preview(s, kForm, "Image1");
  const std::string picture = Box(p, kImage.control).Text();
  if (!picture.empty()) Skip([&] { preview.SetPicture(p.LoadPicture(picture)); });
  else if (following) Skip([&] { preview.SetPicture(FormHandle(s, "createquest").Icon()); });
  for (const BattleField& f : kLateFields) ReadBox(p, page, f);
}

void WriteText(Program& p, const char* control) {
  WriteBound(p, SelectedPage(p), KeyOf(control), Box(p, control).Text());
}

#define FW_TEXT_CHANGE(N) \
  void Text##N##_Change(Program& p) { WriteText(p, "Text" #N); }
FW_TEXT_CHANGE(1) FW_TEXT_CHANGE(2) FW_TEXT_CHANGE(3) FW_TEXT_CHANGE(4) FW_TEXT_CHANGE(5)
FW_TEXT_CHANGE(6) FW_TEXT_CHANGE(7) FW_TEXT_CHANGE(8) FW_TEXT_CHANGE(9) FW_TEXT_CHANGE(10)
FW_TEXT_CHANGE(11) FW_TEXT_CHANGE(12) FW_TEXT_CHANGE(13) FW_TEXT_CHANGE(14) FW_TEXT_CHANGE(15)
#undef FW_TEXT_CHANGE

void Check1_Click(Program& p) {
  WriteBound(p, SelectedPage(p), kEscapeCheck, std::to_string(CheckBox(p.surface(), kForm, "Check1").Value()));
}

#define FW_TEXT(N) {"Text" #N, Event::Change, Text##N##_Change}
constexpr HandlerDecl kHandlers[] = {
    {"Form", Event::Load, Form_Load},
    FW_TEXT(1), FW_TEXT(2), FW_TEXT(3), FW_TEXT(4), FW_TEXT(5), FW_TEXT(6), FW_TEXT(7), FW_TEXT(8),
    FW_TEXT(9), FW_TEXT(10), FW_TEXT(11), FW_TEXT(12), FW_TEXT(13), FW_TEXT(14), FW_TEXT(15),
    {"Check1", Event::Click, Check1_Click},
    {"Command6", Event::Click, Command6_Click},
    {"Command1", Event::Click, Command1_Click},
    {"Command2", Event::Click, Command2_Click},
};
#undef FW_TEXT

}  // namespace

void frmbattle::Form_Load(Program& p) {
  FormSurface& s = p.surface();
  if (s.FindForm("FrmGame") >= 0)
    Skip([&] { FormHandle(s, kForm).SetIcon(FormHandle(s, "FrmGame").Icon()); });
  ReadPage(p, false);
}

void frmbattle::FollowPage(Program& p) {
  if (p.surface().FindForm(kForm) < 0) return;  // a program without the window
  // The first reference loads the window, whose own load reads the page.
  Skip([&] { FormHandle(p.surface(), kForm).Caption(); });
  ReadPage(p, true);
}

void frmbattle::Command6_Click(Program& p) {
  if (std::string path = PickInto(p, {kForm, "CommonDialog2", "Text5"}, SelectedPage(p), kImage.key); !path.empty())
    ShowPicked(p, Image(p.surface(), kForm, "Image1"), path);
}

void frmbattle::Command1_Click(Program& p) {
  PickInto(p, {kForm, "CommonDialog1", "Text6"}, SelectedPage(p), kMusic.key);
}

void frmbattle::Command2_Click(Program& p) {
  PickInto(p, {kForm, "CommonDialog3", "Text15"}, SelectedPage(p), "BattleMp3");
}

const FormDef& FrmBattleForm() {
  static const FormDef form{&kFrmBattleTable, kHandlers};
  return form;
}

}  // namespace fw
