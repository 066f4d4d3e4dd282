#pragma once
#include <cstdint>
#include <string>

#include "forms/program.h"

namespace fw {

// The module fields of the MIDI voice: one for the whole program.
struct MidiApiState {
  bool hooked = false;           // MidiOldWndProc is set: the notification is received
  std::int32_t MidiWindow = 0;   // the form handle that receives the notification
  std::int32_t MidiFrom = 0;
  std::int32_t MidiTo = 0;
  std::string MidiFile;
  bool MidiOpen = false;
  bool MidiRepeat = false;
  std::uint32_t generation = 0;  // bumped by every play and close: older ends are stale
};

// The program's MIDI fields.
inline MidiApiState& Midi(Program& p) { return p.Module<MidiApiState>(); }

}  // namespace fw
