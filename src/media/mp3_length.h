#pragma once
#include <optional>

#include "media/media_length.h"

namespace fw {

// The playing time of an MP3 in seconds, through libmpg123: every MPEG
// version and layer, a VBR file by its Xing or VBRI header, a CBR one by its
// size and bit rate. nullopt when the bytes hold no MPEG audio or the library
// is not installed.
std::optional<double> Mp3Length(MediaBytes& file);

}  // namespace fw
