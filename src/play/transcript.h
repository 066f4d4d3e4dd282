#pragma once
#include <string_view>

namespace fw {

struct GameState;

// The transcript Text1 only grows: these append, with CR LF line breaks.

// The text and a line break behind it.
void AppendLine(const GameState& g, std::string_view text);

// A line break, ">", a line break, then the text: one block of the story.
void AppendBlock(const GameState& g, std::string_view text);

}  // namespace fw
