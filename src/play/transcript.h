#pragma once
#include <string>
#include <string_view>

namespace fw {

class Program;
struct GameState;

// The transcript Text1 only grows: these append, with CR LF line breaks.

// The text and a line break behind it.
void AppendLine(const GameState& g, std::string_view text);

// A line break, ">", a line break, then the text: one block of the story.
void AppendBlock(const GameState& g, std::string_view text);

// The transcript as a text file: UTF-8, a line break at the end of each line.
std::string TranscriptText(const GameState& g);

namespace frmgame {

// Game / Save Transcript...: the whole transcript into a text file the
// player names.
void mnutranscript_Click(Program& p);

}  // namespace frmgame

}  // namespace fw
