#pragma once
#include <optional>
#include <string>

#include "media/media_length.h"

namespace fw {

// Media files on disk, read only as far as their headers need. They open
// through OpenRegularFile: a FIFO, a device or a folder reads as missing.

// A sound or movie file: its kind and its playing time.
struct MediaFileInfo {
  MediaKind kind = MediaKind::None;
  std::optional<double> length;  // nullopt: the header does not tell
};

// Kind None when the file is missing, no regular file or no known media.
MediaFileInfo ReadMediaFile(const std::string& hostPath);
MediaKind SniffMediaFile(const std::string& hostPath);

// A MIDI file whole, as a tune's length needs its tracks; nullopt when it is
// missing, no regular file, or larger than any tune (kMaxMidiBytes).
inline constexpr std::size_t kMaxMidiBytes = 8 << 20;
std::optional<std::string> ReadMidiFile(const std::string& hostPath);

}  // namespace fw
