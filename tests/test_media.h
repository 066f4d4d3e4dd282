#pragma once
// Small media files made for tests.
#include <cstdint>
#include <string>

namespace fw::testing {

// Little-endian bytes of a number.
inline std::string Le(std::uint32_t v, int bytes) {
  std::string s;
  for (int i = 0; i < bytes; ++i) s += static_cast<char>((v >> (8 * i)) & 0xFF);
  return s;
}

// A mono PCM WAV of `frames` frames at `rate` a second: a square wave.
inline std::string TestWav(std::uint32_t rate, std::uint32_t frames, int bits = 8) {
  std::uint32_t bytesPerFrame = static_cast<std::uint32_t>(bits / 8);
  std::string data;
  for (std::uint32_t i = 0; i < frames; ++i) {
    bool high = i % 20 < 10;
    data += bits == 8 ? std::string(1, high ? '\xC0' : '\x40') : Le(high ? 8000 : 0x10000 - 8000, 2);
  }
  return "RIFF" + Le(36 + data.size(), 4) + "WAVEfmt " + Le(16, 4) + Le(1, 2) + Le(1, 2) + Le(rate, 4) +
         Le(rate * bytesPerFrame, 4) + Le(bytesPerFrame, 2) + Le(bits, 2) + "data" + Le(data.size(), 4) + data;
}

}  // namespace fw::testing
