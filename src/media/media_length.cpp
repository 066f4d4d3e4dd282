#include "media/media_length.h"

#include <algorithm>
#include <vector>

#include "media/mp3_length.h"

namespace fw {
namespace {

// A RIFF walk stops at this many chunk headers and looks no deeper than this
// many LIST chunks: real files hold their headers near the start and nest
// two or three deep, and a crafted file must cost neither stack nor time.
constexpr int kMaxChunks = 4096;
constexpr std::size_t kMaxListDepth = 16;

std::uint32_t Le(std::string_view b, std::size_t at, int bytes) {
  std::uint32_t v = 0;
  for (int i = bytes - 1; i >= 0; --i) v = (v << 8) | static_cast<unsigned char>(b[at + i]);
  return v;
}

// Where a chunk's body starts in the file, and the size its header claims.
struct Chunk {
  std::uint64_t body;
  std::uint32_t size;
};

// The first chunk with the id, in file order, looking inside LIST chunks
// too. Each open LIST keeps its end and where the walk goes on after it.
std::optional<Chunk> FindChunk(MediaBytes& file, std::string_view id) {
  struct Open {
    std::uint64_t end, next;
  };
  std::vector<Open> lists;
  std::uint64_t at = 12;  // past "RIFF", its size and the form type
  for (int seen = 0; seen < kMaxChunks;) {
    std::uint64_t end = lists.empty() ? file.Size() : lists.back().end;
    if (at + 8 > end) {
      if (lists.empty()) break;
      at = lists.back().next;
      lists.pop_back();
      continue;
    }
    ++seen;
    std::string_view head = file.Read(at, 8);
    if (head.size() < 8) break;
    std::uint32_t size = Le(head, 4, 4);
    if (head.substr(0, 4) == id) return Chunk{at + 8, size};
    std::uint64_t next = at + 8 + size + (size & 1);
    if (head.substr(0, 4) == "LIST" && at + 12 <= end && lists.size() < kMaxListDepth) {
      lists.push_back({at + 8 + std::min<std::uint64_t>(size, end - at - 8), next});
      at += 12;  // past the list's type
    } else {
      at = next;
    }
  }
  return std::nullopt;
}

std::optional<double> WavLength(MediaBytes& file) {
  auto fmt = FindChunk(file, "fmt ");
  auto data = FindChunk(file, "data");
  if (!fmt || !data || fmt->size < 16) return std::nullopt;
  std::string_view format = file.Read(fmt->body, 16);
  if (format.size() < 16) return std::nullopt;
  std::uint32_t byteRate = Le(format, 8, 4);
  if (byteRate == 0 || data->body > file.Size()) return std::nullopt;
  std::uint64_t size = std::min<std::uint64_t>(data->size, file.Size() - data->body);
  return static_cast<double>(size) / byteRate;
}

std::optional<double> AviLength(MediaBytes& file) {
  auto avih = FindChunk(file, "avih");
  if (!avih) return std::nullopt;
  std::string_view header = file.Read(avih->body, 20);
  if (header.size() < 20) return std::nullopt;
  std::uint32_t microsPerFrame = Le(header, 0, 4);
  std::uint32_t frames = Le(header, 16, 4);
  if (microsPerFrame == 0 || frames == 0) return std::nullopt;
  return static_cast<double>(microsPerFrame) * frames / 1e6;
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

std::optional<double> MediaLength(MediaKind kind, MediaBytes& file) {
  switch (kind) {
    case MediaKind::Wav: return WavLength(file);
    case MediaKind::Avi: return AviLength(file);
    case MediaKind::Mp3: return Mp3Length(file);
    case MediaKind::None: break;
  }
  return std::nullopt;
}

std::optional<double> MediaLength(MediaKind kind, std::string_view bytes) {
  MemoryBytes file(bytes);
  return MediaLength(kind, file);
}

}  // namespace fw
