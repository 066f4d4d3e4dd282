#pragma once
#include <iosfwd>
#include <string>
#include <vector>

#include "forms/services.h"

namespace fw {

// The author tools on the command line: `check`, `map` and `explore`, each
// with the words after its name. They give the process's exit code. The map
// is laid out by `layout`.
int RunCheckCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int RunMapCommand(const std::vector<std::string>& args, GraphLayout& layout, std::ostream& out, std::ostream& err);
int RunExploreCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace fw
