#pragma once
#include <string>

namespace fw {

// The name a game folder gives its own soundfont, beside the executable.
inline constexpr const char* kGameSoundfont = "soundfont.sf2";

// The General MIDI soundfont to play with: $FABLEWRIGHT_SOUNDFONT, else the
// one in appDir (a game folder's own), else the first of Debian's that is
// installed; "" when there is none.
std::string FindSoundfont(const std::string& appDir = "");

}  // namespace fw
