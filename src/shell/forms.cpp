#include "shell/forms.h"

#include <vector>

#include "editor/author_menu.h"
#include "editor/createquest.h"
#include "editor/frmbattle.h"
#include "editor/frmcharcreate.h"
#include "packager/frmcompile.h"
#include "shell/frmgame.h"
#include "shell/small_forms.h"

namespace fw {

std::span<const FormDef> AllForms() {
  static const std::vector<FormDef> forms = {FrmGameForm(), FrmSplashForm(), FrmUpdatesForm(), CreateQuestForm(),
                                             FrmCompileForm(), FrmBattleForm(), FrmCharCreateForm(),
                                             // The editor's author tools.
                                             FrmQuestMapForm(), FrmFindingsForm(), FrmExploreForm()};
  return forms;
}

}  // namespace fw
