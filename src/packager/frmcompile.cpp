#include "packager/frmcompile.h"

#include "forms/controls.h"
#include "forms/program.h"

namespace fw {
namespace {

void Form_Load(Program& p) {
  FormSurface& s = p.surface();
  if (s.FindForm("FrmGame") >= 0)
    Skip([&] { FormHandle(s, "FrmCompile").SetIcon(FormHandle(s, "FrmGame").Icon()); });
}

// It closes by hiding, and stays loaded.
void Form_QueryUnload(Program& p, bool& cancel) {
  cancel = true;
  FormHandle(p.surface(), "FrmCompile").Hide();
}

constexpr HandlerDecl kHandlers[] = {
    {"Form", Event::Load, Form_Load},
    {"Form", Event::QueryUnload, Form_QueryUnload},
};

}  // namespace

const FormDecl kFrmCompileTable{
    .name = "FrmCompile",
    .caption = "Compile",
    .width = 6195,
    .height = 4635,
    .controls = {},
};

const FormDef& FrmCompileForm() {
  static const FormDef form{&kFrmCompileTable, kHandlers};
  return form;
}

}  // namespace fw
