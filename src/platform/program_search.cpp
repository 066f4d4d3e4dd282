#include "platform/program_search.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <sstream>

namespace fw {
namespace {

bool Runnable(const std::string& path) {
  struct stat st;
  return ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode) && ::access(path.c_str(), X_OK) == 0;
}

}  // namespace

std::string FindProgram(std::string_view word) {
  std::string name(word);
  if (name.empty()) return {};
  if (name.find('/') != std::string::npos) return Runnable(name) ? name : std::string();
  const char* path = std::getenv("PATH");
  std::stringstream dirs(path ? path : "");
  for (std::string dir; std::getline(dirs, dir, ':');) {
    if (dir.empty() || dir[0] != '/') continue;
    std::string candidate = dir + "/" + name;
    if (Runnable(candidate)) return candidate;
  }
  return {};
}

}  // namespace fw
