#include "shell/forms.h"

#include <vector>

#include "editor/createquest.h"
#include "packager/frmcompile.h"
#include "shell/frmgame.h"

namespace fw {

std::span<const FormDef> AllForms() {
  static const std::vector<FormDef> forms = {FrmGameForm(), CreateQuestForm(), FrmCompileForm()};
  return forms;
}

}  // namespace fw
