#pragma once
#include <span>

#include "forms/form_table.h"

namespace fw {

// Every form of the system, as a program is built from them.
std::span<const FormDef> AllForms();

}  // namespace fw
