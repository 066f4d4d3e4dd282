#include "shell/forms.h"

#include <vector>

#include "shell/frmgame.h"
#include "shell/small_forms.h"

namespace fw {

std::span<const FormDef> AllForms() {
  static const std::vector<FormDef> forms = {FrmGameForm(), FrmSplashForm(), FrmUpdatesForm()};
  return forms;
}

}  // namespace fw
