#include "platform/soundfont.h"

#include <cstdlib>
#include <filesystem>

namespace fw {

std::string FindSoundfont(const std::string& appDir) {
  if (const char* chosen = std::getenv("FABLEWRIGHT_SOUNDFONT"); chosen && *chosen) return chosen;
  if (!appDir.empty()) {
    std::error_code ec;
    std::string own = appDir + "/" + kGameSoundfont;
    if (std::filesystem::is_regular_file(own, ec)) return own;
  }
  for (const char* path : {"/usr/share/sounds/sf2/default-GM.sf2", "/usr/share/sounds/sf2/FluidR3_GM.sf2",
                           "/usr/share/sounds/sf2/TimGM6mb.sf2"}) {
    std::error_code ec;
    if (std::filesystem::is_regular_file(path, ec)) return path;
  }
  return {};
}

}  // namespace fw
