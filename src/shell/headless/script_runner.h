#pragma once
#include <iosfwd>
#include <string>

namespace fw {

struct ScriptOptions {
  std::string appDir;   // what App.Path reports (host path)
  std::string exeName;  // what App.EXEName reports
  std::string home;     // the per-user folder that bare profile names mean
  bool transcript = false;  // echo the transcript and message boxes as they come
};

// Runs a script file against a fresh headless program. Gives the exit code:
// 0 when every expectation held, 1 when one failed, 2 on a script error.
int RunScript(const std::string& scriptPath, const ScriptOptions& options, std::ostream& out,
              std::ostream& err);

}  // namespace fw
