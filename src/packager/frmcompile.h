#pragma once
#include "forms/form_table.h"

namespace fw {

// The packager's window. It opens empty; the packager fills it.
extern const FormDecl kFrmCompileTable;
const FormDef& FrmCompileForm();

}  // namespace fw
