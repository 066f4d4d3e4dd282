#pragma once
#include <cstddef>
#include <optional>
#include <string>

namespace fw {

// Closes a descriptor when it goes out of scope.
struct Fd {
  int fd = -1;
  Fd() = default;
  explicit Fd(int f) : fd(f) {}
  Fd(const Fd&) = delete;
  Fd& operator=(const Fd&) = delete;
  ~Fd();
};

// Every reader of the program's files (quests, saved games, character files,
// game.dat, scripts, media) opens them through these: only a regular file is
// read (a link to one is fine). A FIFO, a device or a folder reads as missing,
// and the open never blocks on it.

// An open descriptor of the regular file at the host path, or -1 with errno
// telling why: ENOENT nothing is there, EINVAL not a regular file. The caller
// closes it.
int OpenRegularFile(const std::string& hostPath);

// Up to `limit` bytes from the start of the regular file, sized to what the
// file holds; nullopt when it is not a regular file or cannot be read.
std::optional<std::string> ReadRegularFile(const std::string& hostPath,
                                           std::size_t limit = static_cast<std::size_t>(-1));

// The bytes of an open descriptor from its current offset to its end (at most
// `limit`); false on a read error.
bool ReadToEnd(int fd, std::string& out, std::size_t limit = static_cast<std::size_t>(-1));

}  // namespace fw
