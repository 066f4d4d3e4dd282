#include "media/media_length.h"

#include <cstdint>

namespace fw {
namespace {

std::uint32_t Le(std::string_view b, std::size_t at, int bytes) {
  std::uint32_t v = 0;
  for (int i = bytes - 1; i >= 0; --i) v = (v << 8) | static_cast<unsigned char>(b[at + i]);
  return v;
}

// The chunks of a RIFF file: gives the offset and size of the first chunk
// with the id, searching inside LIST chunks too.
std::optional<std::pair<std::size_t, std::uint32_t>> FindChunk(std::string_view b, std::size_t from,
                                                               std::size_t to, std::string_view id) {
  std::size_t at = from;
  while (at + 8 <= to) {
    std::string_view cid = b.substr(at, 4);
    std::uint32_t size = Le(b, at + 4, 4);
    if (cid == id) return std::make_pair(at + 8, size);
    if (cid == "LIST" && at + 12 <= to) {
      std::size_t end = at + 8 + std::min<std::size_t>(size, to - at - 8);
      if (auto inner = FindChunk(b, at + 12, end, id)) return inner;
    }
    std::size_t next = at + 8 + size + (size & 1);
    if (next <= at) break;
    at = next;
  }
  return std::nullopt;
}

std::optional<double> WavLength(std::string_view b) {
  auto fmt = FindChunk(b, 12, b.size(), "fmt ");
  auto data = FindChunk(b, 12, b.size(), "data");
  if (!fmt || !data || fmt->second < 16 || fmt->first + 16 > b.size()) return std::nullopt;
  std::uint32_t byteRate = Le(b, fmt->first + 8, 4);
  if (byteRate == 0) return std::nullopt;
  std::uint32_t size = std::min<std::uint64_t>(data->second, b.size() - data->first);
  return static_cast<double>(size) / byteRate;
}

std::optional<double> AviLength(std::string_view b) {
  auto avih = FindChunk(b, 12, b.size(), "avih");
  if (!avih || avih->first + 20 > b.size()) return std::nullopt;
  std::uint32_t microsPerFrame = Le(b, avih->first, 4);
  std::uint32_t frames = Le(b, avih->first + 16, 4);
  if (microsPerFrame == 0 || frames == 0) return std::nullopt;
  return static_cast<double>(microsPerFrame) * frames / 1e6;
}

// MPEG-1 layer III: the bit rate of the first frame and the size of the file.
std::optional<double> Mp3Length(std::string_view b) {
  std::size_t at = 0;
  if (b.substr(0, 3) == "ID3" && b.size() >= 10) {
    at = 10 + ((Le(b, 6, 1) & 0x7F) << 21 | (Le(b, 7, 1) & 0x7F) << 14 | (Le(b, 8, 1) & 0x7F) << 7 |
               (Le(b, 9, 1) & 0x7F));
  }
  static constexpr int kKbps[16] = {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 0};
  for (; at + 4 <= b.size(); ++at) {
    auto b0 = static_cast<unsigned char>(b[at]), b1 = static_cast<unsigned char>(b[at + 1]);
    if (b0 != 0xFF || (b1 & 0xFE) != 0xFA) continue;  // MPEG-1, layer III
    int kbps = kKbps[static_cast<unsigned char>(b[at + 2]) >> 4];
    if (kbps == 0) continue;
    return static_cast<double>(b.size() - at) * 8 / (kbps * 1000.0);
  }
  return std::nullopt;
}

}  // namespace

MediaKind SniffMedia(std::string_view head) {
  if (head.size() >= 12 && head.substr(0, 4) == "RIFF") {
    if (head.substr(8, 4) == "WAVE") return MediaKind::Wav;
    if (head.substr(8, 4) == "AVI ") return MediaKind::Avi;
    return MediaKind::None;
  }
  if (head.substr(0, 3) == "ID3") return MediaKind::Mp3;
  if (head.size() >= 2 && static_cast<unsigned char>(head[0]) == 0xFF &&
      (static_cast<unsigned char>(head[1]) & 0xE0) == 0xE0)
    return MediaKind::Mp3;
  return MediaKind::None;
}

std::optional<double> MediaLength(MediaKind kind, std::string_view bytes) {
  switch (kind) {
    case MediaKind::Wav: return WavLength(bytes);
    case MediaKind::Avi: return AviLength(bytes);
    case MediaKind::Mp3: return Mp3Length(bytes);
    case MediaKind::None: break;
  }
  return std::nullopt;
}

}  // namespace fw
