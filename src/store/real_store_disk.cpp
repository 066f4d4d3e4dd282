// The store's file operations on this machine's disk.
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "forms/regular_file.h"
#include "store/store_disk.h"

namespace fw {
namespace {

// A flock held on an open descriptor, given up when it closes.
class HeldFlock : public StoreDisk::Lock {
 public:
  explicit HeldFlock(int fd) : fd_{fd} {}

 private:
  Fd fd_;
};

// The real path of an existing file or folder, or "" with errno set.
std::string RealPath(const std::string& path) {
  char* resolved = ::realpath(path.c_str(), nullptr);
  if (!resolved) return {};
  std::string real(resolved);
  std::free(resolved);
  return real;
}

int ErrorOr(bool ok) { return ok ? 0 : errno; }

}  // namespace

std::string FolderOf(const std::string& path) {
  std::size_t slash = path.find_last_of('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::string NameOf(const std::string& path) { return path.substr(path.find_last_of('/') + 1); }

std::string PathIn(const std::string& folder, const std::string& name) {
  return folder.ends_with('/') ? folder + name : folder + "/" + name;
}

int RealStoreDisk::Locate(const std::string& path, std::string& real) {
  real = RealPath(path);
  if (!real.empty()) return 0;
  if (errno != ENOENT) return errno;
  struct stat st;
  if (::lstat(path.c_str(), &st) == 0) return ENOENT;  // a link that leads nowhere
  std::string folder = RealPath(FolderOf(path));
  if (folder.empty()) return errno;
  real = PathIn(folder, NameOf(path));
  return 0;
}

std::unique_ptr<StoreDisk::Lock> RealStoreDisk::LockFolder(const std::string& folder) {
  int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return nullptr;
  auto lock = std::make_unique<HeldFlock>(fd);
  while (::flock(fd, LOCK_EX) != 0)
    if (errno != EINTR) return nullptr;
  return lock;
}

int RealStoreDisk::Read(const std::string& path, std::string& bytes, FileMeta* meta) {
  Fd in{OpenRegularFile(path)};
  if (in.fd < 0) return errno;
  if (!ReadToEnd(in.fd, bytes)) return errno ? errno : EIO;
  if (!meta) return 0;
  struct stat st;
  if (::fstat(in.fd, &st) != 0) return errno;
  *meta = {static_cast<unsigned>(st.st_mode & 07777), st.st_uid, st.st_gid};
  return 0;
}

int RealStoreDisk::CheckWritable(const std::string& path) {
  return ErrorOr(::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0);
}

std::vector<std::string> RealStoreDisk::List(const std::string& folder) {
  std::vector<std::string> names;
  DIR* dir = ::opendir(folder.c_str());
  if (!dir) return names;
  while (const dirent* entry = ::readdir(dir)) names.emplace_back(entry->d_name);
  ::closedir(dir);
  return names;
}

int RealStoreDisk::Create(const std::string& path, const FileMeta* like) {
  // A copy of a file is made private first and given its mode once made.
  Fd out{::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, like ? 0600 : 0666)};
  if (out.fd < 0) return errno;
  if (!like) return 0;
  // Only a privileged writer can give a file to its owner; the others keep
  // it as theirs. Changing the owner clears set-id bits, so the mode follows.
  (void)!::fchown(out.fd, like->uid, like->gid);
  if (::fchmod(out.fd, like->mode) == 0) return 0;
  int error = errno;
  ::unlink(path.c_str());
  return error;
}

int RealStoreDisk::WriteAt(const std::string& path, std::size_t offset, std::string_view bytes) {
  Fd out{::open(path.c_str(), O_WRONLY | O_CLOEXEC)};
  if (out.fd < 0) return errno;
  while (!bytes.empty()) {
    ssize_t n = ::pwrite(out.fd, bytes.data(), bytes.size(), static_cast<off_t>(offset));
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return n < 0 ? errno : EIO;
    bytes.remove_prefix(static_cast<std::size_t>(n));
    offset += static_cast<std::size_t>(n);
  }
  return ErrorOr(::fsync(out.fd) == 0);
}

int RealStoreDisk::Truncate(const std::string& path, std::size_t size) {
  Fd out{::open(path.c_str(), O_WRONLY | O_CLOEXEC)};
  if (out.fd < 0) return errno;
  return ErrorOr(::ftruncate(out.fd, static_cast<off_t>(size)) == 0 && ::fsync(out.fd) == 0);
}

int RealStoreDisk::Rename(const std::string& from, const std::string& to) {
  return ErrorOr(::rename(from.c_str(), to.c_str()) == 0);
}

int RealStoreDisk::Remove(const std::string& path) { return ErrorOr(::unlink(path.c_str()) == 0); }

void RealStoreDisk::SyncFolder(const std::string& folder) {
  Fd dir{::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
  if (dir.fd >= 0) ::fsync(dir.fd);
}

int RealStoreDisk::MakeFolder(const std::string& path) {
  if (::mkdir(path.c_str(), 0755) == 0) return 0;
  int error = errno;
  struct stat st;
  return error == EEXIST && ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode) ? 0 : error;
}

int RealStoreDisk::TryLockFile(const std::string& path, std::unique_ptr<Lock>& lock) {
  int fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0644);
  if (fd < 0) return errno;
  auto held = std::make_unique<HeldFlock>(fd);
  while (::flock(fd, LOCK_EX | LOCK_NB) != 0)
    if (errno != EINTR) return errno == EWOULDBLOCK ? EWOULDBLOCK : errno;
  lock = std::move(held);
  return 0;
}

}  // namespace fw
