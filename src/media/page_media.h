#pragma once
#include <optional>
#include <string_view>

namespace fw {

class Program;

// The media steps of showing a page, on FrmGame's players. Each statement
// runs skip-on-error: a file that cannot be played leaves the page as it is.

// Shows the movie panel and plays the page's movie file; a blank value does
// nothing. A file that cannot be played leaves the panel up until Timer2's
// next tick.
void PlayPageMovie(Program& p, std::string_view value);

// Timer2: lifts the movie panel once the movie has stopped.
void Timer2_Timer(Program& p);

// The movie's panel over the page: it covers the options until Timer2 lifts
// it, by itself, when the movie ends; a click cannot. secondsLeft is how long
// that is, where the player can tell.
struct MovieCover {
  std::optional<double> secondsLeft;
};
// The movie's panel while it is the panel on top of the page, else nullopt.
std::optional<MovieCover> MovieOverPage(Program& p);

// Gives playmp3 the file and plays it: a blank file is silence.
void PlayMp3(Program& p, std::string_view file);

// The same, unless playmp3 has this very file fully loaded already, so that a
// track plays on across pages; a blank file changes nothing.
void PlayPageMp3(Program& p, std::string_view mp3);

// Sets playmp3's PlayCount for a page: 99 rounds when autoRepeat is "1",
// else one round; with onlyWithMp3, the one round only when the page names
// a track.
void ApplyAutoRepeat(Program& p, std::string_view autoRepeat, std::string_view mp3, bool onlyWithMp3);

}  // namespace fw
