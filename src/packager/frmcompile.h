#pragma once
#include "forms/form_table.h"

namespace fw {

// The packager's window: a quest becomes a game folder a friend can run.
extern const FormDecl kFrmCompileTable;
const FormDef& FrmCompileForm();

}  // namespace fw
