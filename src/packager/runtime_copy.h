#pragma once
#include <string>

namespace fw {

class Program;

// The runtime files into the game folder (a program path ending in a
// separator), in the runtime's order, each in its own subfolder; a file that
// cannot be copied is skipped and the others follow. Then the copy of the
// executable is told where they are. Without a runtime, nothing happens.
void CopyRuntime(Program& p, const std::string& folder, const std::string& exeCopy);

}  // namespace fw
