#include "forms/paths.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "forms/codepage.h"

namespace fw {

std::string HostPath(std::string_view path) {
  std::string out = Utf8FromCp1252(path);
  for (char& c : out)
    if (c == '\\') c = '/';
  return out;
}

bool HasDirectoryPart(std::string_view path) {
  if (path.find_first_of("/\\") != std::string_view::npos) return true;
  return path.size() >= 2 && path[1] == ':';
}

std::string DefaultUserDir() {
  std::string base;
  if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg && *xdg) {
    base = xdg;
  } else if (const char* home = std::getenv("HOME"); home && *home) {
    base = std::string(home) + "/.local/share";
  } else {
    base = "/tmp";
  }
  std::string dir = base + "/fablewright";
  std::error_code ec;
  std::filesystem::create_directories(dir, ec);
  return dir;
}

std::string HomeDir() {
  const char* home = std::getenv("HOME");
  return home ? home : "";
}

}  // namespace fw
