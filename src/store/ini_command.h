#pragma once
#include <ostream>
#include <string>
#include <vector>

namespace fw {

// fablewright ini get FILE SECTION KEY / ini set FILE SECTION KEY VALUE,
// with --scrambled and --home DIR. args are the UTF-8 words after "ini".
// Gives the exit code: 0 done, 1 refused or the file cannot be read or
// written (one line on err), 2 wrong usage.
int RunIniCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace fw
