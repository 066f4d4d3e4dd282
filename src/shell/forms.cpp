#include "shell/forms.h"

#include <vector>

#include "editor/createquest.h"
#include "packager/frmcompile.h"
#include "shell/frmgame.h"
#include "shell/small_forms.h"

namespace fw {

std::span<const FormDef> AllForms() {
  static const std::vector<FormDef> forms = {FrmGameForm(), FrmSplashForm(), FrmUpdatesForm(), CreateQuestForm(),
                                             FrmCompileForm()};
  return forms;
}

}  // namespace fw
