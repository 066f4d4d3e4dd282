#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace fw {

// Standard MIDI Files: enough to know how long a tune plays, and to write the
// small tunes the project ships.

// The playing time in seconds of a Standard MIDI File's bytes, from the
// last event of its longest track and its tempo changes; nullopt when the
// bytes are no MIDI file or are cut short.
std::optional<double> MidiLength(std::string_view bytes);

// The tick that plays at the given second of the file (the last tick when
// the time lies past the end); nullopt for bytes that are no MIDI file.
std::optional<std::uint64_t> MidiTickAt(std::string_view bytes, double seconds);

// One note of a tune to write: start and length in ticks.
struct MidiNote {
  std::uint32_t start, length;
  std::uint8_t key, velocity = 90;
  std::uint8_t channel = 0;
};

// A format 0 file with one tempo, one program per channel used, and the notes.
std::string WriteMidi(const std::vector<MidiNote>& notes, std::uint16_t ticksPerQuarter,
                      std::uint32_t microsPerQuarter, std::uint8_t program);

}  // namespace fw
