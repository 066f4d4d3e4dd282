#pragma once
#include <string_view>

#include "forms/surface.h"

namespace fw {

class Program;

// What the logic does to a media player control. The values live in the
// surface; the backend behind Services::players plays.

// Writing FileName loads the file. "" unloads and is no failure; a file that
// cannot be loaded fails, with FileName left as it stood and nothing loaded.
void SetPlayerFileName(Program& p, ControlId player, std::string_view file);
// Plays the loaded file from the start, PlayCount rounds; with nothing loaded
// it is silence.
void PlayerPlay(Program& p, ControlId player);
void PlayerStop(Program& p, ControlId player);
void SetPlayerPlayCount(Program& p, ControlId player, int count);

// The play state a backend reports: 0 stopped, 2 playing.
inline constexpr int kPlayStopped = 0;
inline constexpr int kPlayPlaying = 2;
// The ready state of a fully loaded file.
inline constexpr int kReadyComplete = 4;

}  // namespace fw
