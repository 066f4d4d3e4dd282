#pragma once
#include "play/show_page.h"

namespace fw {

class Program;
struct GameState;

// The media steps of a page show, one call each, so that every caller runs
// them in its own order.

// The page's Image into PicWindow; a blank Image keeps the picture on show.
void PageImageStep(Program& p, const GameState& g);

// The page's Movie in the movie panel.
void PageMovieStep(Program& p, const GameState& g, PageCaller caller);

// The Music field, the MP3 player and the MIDI start, as the caller's row of
// the audio rules says.
void PageAudioStep(Program& p, const GameState& g, PageCaller caller);

// The play count of the MP3 from the page's AutoRepeat.
void AutoRepeatStep(Program& p, const GameState& g, PageCaller caller);

}  // namespace fw
