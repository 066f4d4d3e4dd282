#include "platform/disk_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "forms/failure.h"
#include "forms/regular_file.h"

namespace fs = std::filesystem;

namespace fw {
namespace {

// The destination of a copy, opened for writing only when it is a regular
// file or missing: a FIFO must not wait for a reader, nor a device be written.
int OpenCopyTarget(const std::string& path, const struct stat& source) {
  struct stat st;
  if (::stat(path.c_str(), &st) == 0 && !S_ISREG(st.st_mode)) return -1;
  int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_NONBLOCK | O_CLOEXEC, source.st_mode & 07777);
  if (fd < 0) return -1;
  bool sameFile = ::fstat(fd, &st) == 0 && st.st_dev == source.st_dev && st.st_ino == source.st_ino;
  if (!S_ISREG(st.st_mode) || sameFile) {
    ::close(fd);
    return -1;
  }
  ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
  return fd;
}

bool CopyBytes(int from, int to) {
  char buffer[1 << 16];
  for (;;) {
    ssize_t n = ::read(from, buffer, sizeof buffer);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return false;
    if (n == 0) return true;
    for (ssize_t done = 0; done < n;) {
      ssize_t w = ::write(to, buffer + done, static_cast<std::size_t>(n - done));
      if (w < 0 && errno == EINTR) continue;
      if (w <= 0) return false;
      done += w;
    }
  }
}

}  // namespace

void DiskFiles::Copy(const std::string& from, const std::string& to) {
  Fd in{OpenRegularFile(from)};
  struct stat source;
  if (in.fd < 0 || ::fstat(in.fd, &source) != 0) throw Failure("File not found");
  Fd out{OpenCopyTarget(to, source)};
  if (out.fd < 0 || ::ftruncate(out.fd, 0) != 0 || !CopyBytes(in.fd, out.fd) ||
      ::fchmod(out.fd, source.st_mode & 07777) != 0)
    throw Failure("Path/File access error");
}

void DiskFiles::MakeDir(const std::string& path) {
  std::error_code ec;
  // Only the last folder is made: a missing parent or an existing folder fails.
  if (!fs::create_directory(path, ec) || ec) throw Failure("Path/File access error");
}

void DiskFiles::Remove(const std::string& path) {
  std::error_code ec;
  if (!fs::is_regular_file(path, ec) || !fs::remove(path, ec) || ec) throw Failure("File not found");
}

bool DiskFiles::Exists(const std::string& path) {
  std::error_code ec;
  return fs::exists(path, ec);
}

bool DiskFiles::IsDirectory(const std::string& path) {
  std::error_code ec;
  return fs::is_directory(path, ec);
}

std::string DiskFiles::Head(const std::string& path, std::size_t bytes) {
  return ReadRegularFile(path, bytes).value_or("");
}

}  // namespace fw
