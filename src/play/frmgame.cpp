#include "play/frmgame.h"

namespace fw {

const FormDef& FrmGameForm() {
  static const FormDef form{&kFrmGameTable, {}};
  return form;
}

}  // namespace fw
