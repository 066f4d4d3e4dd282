#include "shell/forms.h"

#include <vector>

#include "editor/createquest.h"
#include "editor/frmbattle.h"
#include "editor/frmcharcreate.h"
#include "packager/frmcompile.h"
#include "shell/frmgame.h"
#include "shell/small_forms.h"

namespace fw {

std::span<const FormDef> AllForms() {
  static const std::vector<FormDef> forms = {FrmGameForm(), FrmSplashForm(), FrmUpdatesForm(), CreateQuestForm(),
                                             FrmCompileForm(), FrmBattleForm(), FrmCharCreateForm()};
  return forms;
}

}  // namespace fw
