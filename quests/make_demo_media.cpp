// Writes the bundled demo quest's media: two looping tunes, a rain track, a
// short movie of the iron gate and the page pictures. Everything is made
// here, from numbers; nothing is taken from elsewhere.
//
//   fablewright-demo-media DIR
#include <cmath>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "media/smf.h"

namespace {

std::string Le(std::uint32_t v, int bytes) {
  std::string s;
  for (int i = 0; i < bytes; ++i) s += static_cast<char>((v >> (8 * i)) & 0xFF);
  return s;
}

bool Write(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary);
  out << bytes;
  return static_cast<bool>(out);
}

// A tune from a list of (key, quarter notes) pairs; key 0 is a rest.
std::string Tune(const std::vector<std::pair<int, int>>& melody, std::uint8_t program, int tempoBpm) {
  std::vector<fw::MidiNote> notes;
  std::uint32_t at = 0;
  for (auto [key, quarters] : melody) {
    std::uint32_t length = 480u * quarters;
    if (key) {
      notes.push_back({at, length - 40, static_cast<std::uint8_t>(key), 96});
      notes.push_back({at, length - 40, static_cast<std::uint8_t>(key - 12), 70, 1});
    }
    at += length;
  }
  return fw::WriteMidi(notes, 480, 60000000u / tempoBpm, program);
}

// Rain: noise through a gentle low-pass filter, with a slow swell.
std::string Rain(double seconds) {
  const std::uint32_t rate = 22050;
  auto frames = static_cast<std::uint32_t>(seconds * rate);
  std::mt19937 noise(7);
  std::uniform_real_distribution<double> uniform(-1, 1);
  std::string data;
  double level = 0;
  for (std::uint32_t i = 0; i < frames; ++i) {
    level = 0.85 * level + 0.15 * uniform(noise);
    double swell = 0.6 + 0.4 * std::sin(i * 2 * M_PI / rate / seconds);
    data += Le(static_cast<std::uint16_t>(static_cast<std::int16_t>(level * swell * 9000)), 2);
  }
  return "RIFF" + Le(36 + data.size(), 4) + "WAVEfmt " + Le(16, 4) + Le(1, 2) + Le(1, 2) + Le(rate, 4) +
         Le(rate * 2, 4) + Le(2, 2) + Le(16, 2) + "data" + Le(data.size(), 4) + data;
}

// A 24-bit picture of width x height, bottom row first, drawn by a function.
template <class Paint>
std::string Pixels(int width, int height, Paint paint) {
  std::string rows;
  int pad = (4 - width * 3 % 4) % 4;
  for (int y = height - 1; y >= 0; --y) {
    for (int x = 0; x < width; ++x) {
      auto [r, g, b] = paint(x, y);
      rows += static_cast<char>(b);
      rows += static_cast<char>(g);
      rows += static_cast<char>(r);
    }
    rows.append(pad, '\0');
  }
  return rows;
}

std::string BitmapInfo(int width, int height, std::uint32_t imageSize) {
  return Le(40, 4) + Le(width, 4) + Le(height, 4) + Le(1, 2) + Le(24, 2) + Le(0, 4) + Le(imageSize, 4) +
         Le(2835, 4) + Le(2835, 4) + Le(0, 4) + Le(0, 4);
}

template <class Paint>
std::string Bitmap(int width, int height, Paint paint) {
  std::string pixels = Pixels(width, height, paint);
  return "BM" + Le(54 + pixels.size(), 4) + Le(0, 4) + Le(54, 4) + BitmapInfo(width, height, pixels.size()) + pixels;
}

struct Rgb {
  int r, g, b;
};

// The iron gate at a given opening (0 shut, 1 open), on a glowing garden.
Rgb Gate(int x, int y, int width, int height, double opening) {
  double glow = 1.0 - std::hypot(x - width / 2.0, y - height / 2.0) / width;
  Rgb garden{static_cast<int>(60 + 180 * glow), static_cast<int>(40 + 150 * glow), 30};
  int half = width / 2;
  int shift = static_cast<int>(opening * half);
  bool leftLeaf = x < half - shift, rightLeaf = x >= half + shift;
  if ((leftLeaf || rightLeaf) && (x % 12 < 3 || y % 40 < 3)) return {40, 40, 48};
  return garden;
}

// An uncompressed AVI of the gate opening: frames of 24-bit pixels.
std::string GateMovie(int width, int height, int fps, int frames) {
  std::string movi = "movi";
  std::uint32_t frameSize = 0;
  for (int f = 0; f < frames; ++f) {
    double opening = static_cast<double>(f) / (frames - 1);
    std::string pixels = Pixels(width, height, [&](int x, int y) {
      Rgb c = Gate(x, y, width, height, opening);
      return std::tuple<int, int, int>{c.r, c.g, c.b};
    });
    frameSize = pixels.size();
    movi += "00db" + Le(pixels.size(), 4) + pixels;
  }
  std::string avih = "avih" + Le(56, 4) + Le(1000000 / fps, 4) + Le(frameSize * fps, 4) + Le(0, 4) +
                     Le(0x10, 4) + Le(frames, 4) + Le(0, 4) + Le(1, 4) + Le(frameSize, 4) + Le(width, 4) +
                     Le(height, 4) + std::string(16, '\0');
  std::string strh = "strh" + Le(56, 4) + "vids" + "DIB " + Le(0, 4) + Le(0, 4) + Le(0, 4) + Le(1, 4) +
                     Le(fps, 4) + Le(0, 4) + Le(frames, 4) + Le(frameSize, 4) + Le(0xFFFFFFFF, 4) + Le(0, 4) +
                     Le(0, 2) + Le(0, 2) + Le(width, 2) + Le(height, 2);
  std::string strf = "strf" + Le(40, 4) + BitmapInfo(width, height, frameSize);
  std::string strl = "LIST" + Le(4 + strh.size() + strf.size(), 4) + "strl" + strh + strf;
  std::string hdrl = "LIST" + Le(4 + avih.size() + strl.size(), 4) + "hdrl" + avih + strl;
  std::string moviList = "LIST" + Le(movi.size(), 4) + movi;
  return "RIFF" + Le(4 + hdrl.size() + moviList.size(), 4) + "AVI " + hdrl + moviList;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: fablewright-demo-media DIR\n";
    return 2;
  }
  std::string dir = argv[1];
  const std::vector<std::pair<int, int>> road = {{69, 1}, {72, 1}, {76, 2}, {74, 1}, {72, 1}, {69, 2},
                                                 {67, 1}, {69, 1}, {72, 2}, {71, 1}, {67, 1}, {69, 3}, {0, 1}};
  const std::vector<std::pair<int, int>> garden = {{72, 2}, {76, 2}, {79, 2}, {84, 2},
                                                   {83, 1}, {79, 1}, {76, 2}, {77, 4}};
  bool ok = Write(dir + "/lantern.mid", Tune(road, 73, 96)) &&   // a flute
            Write(dir + "/garden.mid", Tune(garden, 46, 72)) &&  // a harp
            Write(dir + "/rain.wav", Rain(6.0)) && Write(dir + "/gate.avi", GateMovie(160, 120, 10, 25)) &&
            Write(dir + "/gate.bmp", Bitmap(305, 145, [](int x, int y) {
              Rgb c = Gate(x, y, 305, 145, 0);
              return std::tuple<int, int, int>{c.r, c.g, c.b};
            })) &&
            Write(dir + "/cafe.bmp", Bitmap(305, 145, [](int x, int y) {
              double warm = 1.0 - std::hypot(x - 150.0, y - 90.0) / 200.0;
              bool window = x > 200 && x < 260 && y > 30 && y < 90;
              int r = window ? 250 : static_cast<int>(90 + 140 * std::max(warm, 0.0));
              return std::tuple<int, int, int>{r, window ? 220 : r / 2, window ? 120 : 20};
            }));
  if (!ok) {
    std::cerr << "fablewright-demo-media: cannot write into " << dir << "\n";
    return 1;
  }
  return 0;
}
