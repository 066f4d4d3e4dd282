#include "media/media_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "forms/regular_file.h"

namespace fw {
namespace {

// An open file read at offsets through pread. Chunk headers lie one after
// another, so each read fetches a block and the next header is mostly in it.
class FileBytes : public MediaBytes {
 public:
  explicit FileBytes(const std::string& hostPath) : fd_(OpenRegularFile(hostPath)) {
    struct stat st;
    if (fd_.fd >= 0 && ::fstat(fd_.fd, &st) == 0) size_ = static_cast<std::uint64_t>(st.st_size);
  }

  bool open() const { return fd_.fd >= 0; }
  std::uint64_t Size() override { return size_; }

  std::string_view Read(std::uint64_t offset, std::size_t n) override {
    if (offset < blockAt_ || offset + n > blockAt_ + block_.size()) Fetch(offset, std::max(n, kBlock));
    std::string_view held(block_);
    if (offset < blockAt_ || offset - blockAt_ >= held.size()) return {};
    return held.substr(offset - blockAt_, n);
  }

 private:
  static constexpr std::size_t kBlock = 4096;

  void Fetch(std::uint64_t offset, std::size_t n) {
    blockAt_ = offset;
    block_.clear();
    if (offset >= size_) return;
    block_.resize(static_cast<std::size_t>(std::min<std::uint64_t>(n, size_ - offset)));
    std::size_t got = 0;
    while (got < block_.size()) {
      ssize_t r = ::pread(fd_.fd, block_.data() + got, block_.size() - got, static_cast<off_t>(offset + got));
      if (r < 0 && errno == EINTR) continue;
      if (r <= 0) break;
      got += static_cast<std::size_t>(r);
    }
    block_.resize(got);
  }

  Fd fd_;
  std::uint64_t size_ = 0;
  std::uint64_t blockAt_ = 0;
  std::string block_;
};

}  // namespace

MediaFileInfo ReadMediaFile(const std::string& hostPath) {
  FileBytes file(hostPath);
  if (!file.open()) return {};
  MediaKind kind = SniffMedia(file.Read(0, kSniffBytes));
  if (kind == MediaKind::None) return {};
  return {kind, MediaLength(kind, file)};
}

MediaKind SniffMediaFile(const std::string& hostPath) {
  FileBytes file(hostPath);
  return file.open() ? SniffMedia(file.Read(0, kSniffBytes)) : MediaKind::None;
}

std::optional<std::string> ReadMidiFile(const std::string& hostPath) {
  // One byte past the bound tells a file that is too large from one that fits.
  auto bytes = ReadRegularFile(hostPath, kMaxMidiBytes + 1);
  if (!bytes || bytes->size() > kMaxMidiBytes) return std::nullopt;
  return bytes;
}

}  // namespace fw
