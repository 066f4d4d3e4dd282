#pragma once
#include <cstdint>
#include <string_view>

namespace fw {

class Program;

// The MIDI voice: a small state machine over the module fields of
// MidiApiState and four platform operations behind the Sequencer.

// The messages MidiWndProc answers.
inline constexpr int kMM_MCINOTIFY = 0x3B9;
inline constexpr int kMCI_NOTIFY_SUCCESSFUL = 1;
inline constexpr int kMCI_NOTIFY_SUPERSEDED = 2;

void MidiPlay(Program& p);
void MidiClose(Program& p);
void MidiHook(Program& p);
void MidiUnhook(Program& p);
void MidiWndProc(Program& p, int message, int wParam);

// Called by a sequencer backend when tune number `tune` has played to its
// end. Reaches MidiWndProc only while the hook is in place; an end of a tune
// that was closed or replaced since counts as superseded.
void MidiNotify(Program& p, std::uint32_t tune);

// The sequence every caller repeats to play a tune. stopFirst runs the MIDI
// stop (Command2_Click) first; window is the calling form's handle.
void StartMidi(Program& p, std::string_view file, bool stopFirst, std::int32_t window);

// The program's MIDI stop: MidiClose, then MidiUnhook.
void Command2_Click(Program& p);

}  // namespace fw
