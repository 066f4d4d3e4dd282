#pragma once
#include <optional>
#include <string_view>

namespace fw {

// What a sound or movie file is, from its first bytes.
enum class MediaKind { None, Wav, Mp3, Avi };

MediaKind SniffMedia(std::string_view head);

// The playing time in seconds read from the file's own header; nullopt when
// the header does not tell (the caller then assumes a fixed length).
std::optional<double> MediaLength(MediaKind kind, std::string_view bytes);

}  // namespace fw
