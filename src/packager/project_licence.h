#pragma once
#include <string_view>

namespace fw {

// The program's own licence, the text of LICENSE at the root of its source,
// built in so that every copy of the program can hand it on.
std::string_view ProjectLicence();

// Its copyright line ("Copyright (c) 2026 The Fablewright developers").
std::string_view ProjectCopyright();

}  // namespace fw
