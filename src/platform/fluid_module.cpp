// The MIDI voice as a module of its own, which the program loads only when
// it is to play with sound: FluidSynth and the fifty libraries it brings
// (audio servers, SDL, sound files) then cost nothing to a start that reads a
// key, runs a script or plays in silence. The program finds these entry
// points by name; the first gives the version the module was built as.
#include "platform/fluid_sequencer.h"

extern "C" {

__attribute__((visibility("default"))) const char* fablewright_sound_build() { return FABLEWRIGHT_VERSION; }

// A new sequencer that plays through the sound card, with the soundfont
// found for a program in appDir (UTF-8); the caller owns it.
__attribute__((visibility("default"))) fw::Sequencer* fablewright_make_sequencer(const char* appDir) {
  return new fw::FluidSequencer(true, fw::FindSoundfont(appDir ? appDir : ""));
}

}  // extern "C"
