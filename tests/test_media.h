#pragma once
// Small media files made for tests.
#include <cstdint>
#include <string>
#include <vector>

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

// Big-endian bytes of a number.
inline std::string Be(std::uint32_t v, int bytes) {
  std::string s;
  for (int i = bytes - 1; i >= 0; --i) s += static_cast<char>((v >> (8 * i)) & 0xFF);
  return s;
}

// A mono MP3 of silent layer III frames, one for each bit rate in kbps, of
// MPEG version 1 (1,152 samples a frame at 32, 44.1 or 48 kHz) or 2 (576 at
// 16, 22.05 or 24 kHz), padded as an encoder pads them. With `xingKbps`, a
// first frame of that bit rate holds a Xing header that counts the frames
// after it, as a VBR encoder writes.
inline std::string TestMp3(int version, int rate, const std::vector<int>& kbps, int xingKbps = 0) {
  static const int kRates[2][3] = {{44100, 48000, 32000}, {22050, 24000, 16000}};
  static const int kKbps[2][15] = {{0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320},
                                   {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160}};
  int v = version == 1 ? 0 : 1, rateIndex = 0, coefficient = v ? 72 : 144;
  while (rateIndex < 2 && kRates[v][rateIndex] != rate) ++rateIndex;
  std::size_t sideInfo = v ? 9 : 17;
  long rest = 0;
  auto frame = [&](int bitRate, const std::string& body) {
    int index = 1;
    while (index < 14 && kKbps[v][index] != bitRate) ++index;
    long bits = static_cast<long>(coefficient) * bitRate * 1000;
    std::size_t size = static_cast<std::size_t>(bits / rate);
    rest += bits % rate;
    bool padded = rest >= rate;
    if (padded) rest -= rate, ++size;
    std::string f = {'\xFF', static_cast<char>(v ? 0xF3 : 0xFB),
                     static_cast<char>(index << 4 | rateIndex << 2 | (padded ? 2 : 0)), '\xC0'};
    f += std::string(sideInfo, '\0') + body;
    f.resize(size, '\0');
    return f;
  };
  std::string mp3;
  if (xingKbps) mp3 = frame(xingKbps, "Xing" + Be(1, 4) + Be(static_cast<std::uint32_t>(kbps.size()), 4));
  for (int bitRate : kbps) mp3 += frame(bitRate, "");
  return mp3;
}

}  // namespace fw::testing
