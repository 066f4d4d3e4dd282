#include "shell/forms.h"

#include <vector>

#include "shell/frmgame.h"

namespace fw {

std::span<const FormDef> AllForms() {
  static const std::vector<FormDef> forms = {FrmGameForm()};
  return forms;
}

}  // namespace fw
