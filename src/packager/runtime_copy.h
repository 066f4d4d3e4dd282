#pragma once
#include <string>
#include <vector>

#include "forms/services.h"

namespace fw {

class Program;

// The runtime files into the game folder (a program path ending in a
// separator), in the runtime's order, each in its own subfolder; a file that
// cannot be copied is skipped and the others follow. Then the copy of the
// executable is told where they are, and licenses/ tells whose they are
// (CopyLicenses). Without a runtime, licenses/ holds the LICENSE alone.
void CopyRuntime(Program& p, const std::string& folder, const std::string& exeCopy);

// licenses/ in the game folder: the program's own LICENSE and, for the
// runtime files given, each one's copyright file and a README.txt naming, for
// each, its package and where its source can be had. With none given, the
// LICENSE alone. A file that cannot be written is skipped.
void CopyLicenses(Program& p, const std::string& folder, const std::vector<RuntimeOrigin>& copied);

// The text of licenses/README.txt for those files.
std::string LicensesReadme(const std::vector<RuntimeOrigin>& copied);

}  // namespace fw
