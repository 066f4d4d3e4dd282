#pragma once
#include <iosfwd>
#include <string>

#include "forms/program.h"

namespace fw {

struct ScriptOptions {
  bool transcript = false;  // echo the transcript and message boxes as they come
};

// Runs a script file against a fresh headless program, made by make on the
// headless services. Gives the exit code: 0 when every expectation held, 1
// when one failed, 2 on a script error.
int RunScript(const std::string& scriptPath, const ScriptOptions& options, const ProgramMaker& make,
              std::ostream& out, std::ostream& err);

}  // namespace fw
