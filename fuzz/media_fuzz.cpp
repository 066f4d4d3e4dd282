// Fuzzes the readers of media lengths on arbitrary bytes: the MIDI reader,
// and the WAV, MP3 and AVI headers whatever the bytes claim to be. A length,
// when one is given, is a number of seconds that can be waited for.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "media/media_length.h"
#include "media/smf.h"

namespace {

void CheckSeconds(std::optional<double> seconds) {
  if (seconds && !(std::isfinite(*seconds) && *seconds >= 0)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view bytes(reinterpret_cast<const char*>(data), size);
  auto tune = fw::MidiLength(bytes);
  CheckSeconds(tune);
  if (tune) {
    // The tick at the middle of a tune lies within it.
    auto mid = fw::MidiTickAt(bytes, *tune / 2);
    auto end = fw::MidiTickAt(bytes, *tune + 1);
    if (!mid || !end || *mid > *end) std::abort();
  }
  fw::SniffMedia(bytes);
  for (fw::MediaKind kind : {fw::MediaKind::Wav, fw::MediaKind::Mp3, fw::MediaKind::Avi})
    CheckSeconds(fw::MediaLength(kind, bytes));
  return 0;
}
