#pragma once
#include <string_view>

namespace fw {

class Program;

namespace editor {

// Plays the working file at once in the game window, from page "1" or the
// page asked for, as it stands: every field was written when it changed, so
// nothing is saved first. The editor stays open beside the game.
void TestPlay(Program& p, std::string_view firstPage = "1");

}  // namespace editor
}  // namespace fw
