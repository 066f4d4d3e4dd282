#include "forms/regular_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace fw {

Fd::~Fd() {
  if (fd >= 0) ::close(fd);
}

int OpenRegularFile(const std::string& hostPath) {
  // A device is not even opened: opening some has effects of its own.
  struct stat st;
  if (::stat(hostPath.c_str(), &st) != 0) return -1;
  if (!S_ISREG(st.st_mode)) {
    errno = EINVAL;
    return -1;
  }
  // O_NONBLOCK: should a FIFO have taken the file's place since, opening it
  // for reading would otherwise wait for a writer.
  int fd = ::open(hostPath.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return -1;
  if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
    ::close(fd);
    errno = EINVAL;
    return -1;
  }
  // Reads of a regular file never block; clear the flag all the same.
  ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
  return fd;
}

bool ReadToEnd(int fd, std::string& out, std::size_t limit) {
  struct stat st;
  if (::fstat(fd, &st) != 0) return false;
  out.clear();
  // One byte beyond the size: the read that fills it tells of growth.
  std::size_t want = std::min<std::size_t>(static_cast<std::size_t>(st.st_size), limit);
  out.resize(want < limit ? want + 1 : want);
  std::size_t got = 0;
  while (got < limit) {
    if (got == out.size()) out.resize(std::min(limit, out.size() * 2 + 1));  // the file grew meanwhile
    ssize_t n = ::read(fd, out.data() + got, out.size() - got);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return false;
    if (n == 0) break;
    got += static_cast<std::size_t>(n);
  }
  out.resize(got);
  return true;
}

std::optional<std::string> ReadRegularFile(const std::string& hostPath, std::size_t limit) {
  int fd = OpenRegularFile(hostPath);
  if (fd < 0) return std::nullopt;
  std::string bytes;
  bool ok = ReadToEnd(fd, bytes, limit);
  ::close(fd);
  if (!ok) return std::nullopt;
  return bytes;
}

}  // namespace fw
