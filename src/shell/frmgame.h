#pragma once
#include "forms/form_table.h"

namespace fw {

// The maker's web site, shown on the picture menu and opened by its link.
inline constexpr const char* kWebAddress = "https://fablewright.example";
// Where players and authors write to the maker, as the About box says.
inline constexpr const char* kContactAddress = "authors@fablewright.example";

// The game window's table and handlers.
extern const FormDecl kFrmGameTable;
const FormDef& FrmGameForm();

}  // namespace fw
