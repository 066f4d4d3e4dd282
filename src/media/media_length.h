#pragma once
#include <cstdint>
#include <optional>
#include <string_view>

namespace fw {

// What a sound or movie file is, from its first bytes.
enum class MediaKind { None, Wav, Mp3, Avi };

// The first bytes SniffMedia needs to tell every kind.
inline constexpr std::size_t kSniffBytes = 12;

MediaKind SniffMedia(std::string_view head);

// A media file as the length readers see it: its size, and its bytes read
// where a header says they are. The readers never need the whole file.
class MediaBytes {
 public:
  virtual ~MediaBytes() = default;
  virtual std::uint64_t Size() = 0;
  // Up to n bytes from the offset: fewer at the end of the file, none past
  // it or on a read error. The view lasts until the next Read.
  virtual std::string_view Read(std::uint64_t offset, std::size_t n) = 0;
};

// Bytes already in memory.
class MemoryBytes : public MediaBytes {
 public:
  explicit MemoryBytes(std::string_view bytes) : bytes_(bytes) {}
  std::uint64_t Size() override { return bytes_.size(); }
  std::string_view Read(std::uint64_t offset, std::size_t n) override {
    return offset < bytes_.size() ? bytes_.substr(offset, n) : std::string_view();
  }

 private:
  std::string_view bytes_;
};

// The playing time in seconds read from the file's own header; nullopt when
// the header does not tell or makes no sense (the caller then assumes a
// fixed length).
std::optional<double> MediaLength(MediaKind kind, MediaBytes& file);
std::optional<double> MediaLength(MediaKind kind, std::string_view bytes);

}  // namespace fw
