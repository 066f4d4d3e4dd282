// The character window: quest-wide keys, written at every change, read only
// when the window loads.
#include "editor/frmcharcreate.h"

#include <string>

#include "editor/editor_pickers.h"
#include "editor/editor_state.h"
#include "editor/page_fields.h"
#include "forms/controls.h"
#include "forms/convert.h"
#include "forms/program.h"
#include "store/program_store.h"

namespace fw {
namespace {

using namespace frmcharcreate;

constexpr const char* kForm = "FrmCharCreate";
constexpr const char* kSection = "CharacterData";

struct CharField {
  const char* control;
  const char* key;
};
constexpr CharField kChecks[] = {{"Check1", "CharLoadAllow"}, {"Check2", "CharCreateAllow"}};
constexpr CharField kTexts[] = {{"Text1", "CharName"}, {"Text2", "CharHp"}, {"Text3", "CharAtk"}, {"Text4", "CharDef"}};
constexpr const char* kImageKey = "CharImage";

void WriteCheck(Program& p, const CharField& f) {
  WriteBound(p, kSection, f.key, std::to_string(CheckBox(p.surface(), kForm, f.control).Value()));
}

void WriteText(Program& p, const CharField& f) {
  WriteBound(p, kSection, f.key, TextBox(p.surface(), kForm, f.control).Text());
}

void Check1_Click(Program& p) { WriteCheck(p, kChecks[0]); }
void Check2_Click(Program& p) { WriteCheck(p, kChecks[1]); }
void Text1_Change(Program& p) { WriteText(p, kTexts[0]); }
void Text2_Change(Program& p) { WriteText(p, kTexts[1]); }
void Text3_Change(Program& p) { WriteText(p, kTexts[2]); }
void Text4_Change(Program& p) { WriteText(p, kTexts[3]); }

// Text5 has no handler: only the picker stores the picture's path.
constexpr HandlerDecl kHandlers[] = {
    {"Form", Event::Load, Form_Load},
    {"Check1", Event::Click, Check1_Click},
    {"Check2", Event::Click, Check2_Click},
    {"Text1", Event::Change, Text1_Change},
    {"Text2", Event::Change, Text2_Change},
    {"Text3", Event::Change, Text3_Change},
    {"Text4", Event::Change, Text4_Change},
    {"Command1", Event::Click, Command1_Click},
};

}  // namespace

void frmcharcreate::Form_Load(Program& p) {
  FormSurface& s = p.surface();
  auto read = [&](const char* key) { return ReadINI(p, kWorkingFile, kSection, key); };
  for (const CharField& f : kChecks) Skip([&] { CheckBox(s, kForm, f.control).SetValue(ToInt16(read(f.key))); });
  TextBox image(s, kForm, "Text5");
  Skip([&] { image.SetText(read(kImageKey)); });
  Skip([&] { Image(s, kForm, "Image1").SetPicture(p.LoadPicture(image.Text())); });
  for (const CharField& f : kTexts) Skip([&] { TextBox(s, kForm, f.control).SetText(read(f.key)); });
}

void frmcharcreate::Command1_Click(Program& p) {
  if (std::string path = PickInto(p, {kForm, "CommonDialog2", "Text5"}, kSection, kImageKey); !path.empty())
    ShowPicked(p, Image(p.surface(), kForm, "Image1"), path);
}

const FormDef& FrmCharCreateForm() {
  static const FormDef form{&kFrmCharCreateTable, kHandlers};
  return form;
}

}  // namespace fw
