// The store's file operations on this machine's disk.
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

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

int StoreDisk::CreateWith(const std::string& path, std::string_view bytes, const FileMeta* like) {
  if (int error = Create(path, like)) return error;
  int error = WriteAt(path, 0, bytes);
  if (error) Remove(path);
  return error;
}

int StoreDisk::Scan(const std::string& path, const Looker& look) {
  std::string bytes;
  if (int error = Read(path, bytes, nullptr)) return error;
  std::size_t letGo = 0;
  look(bytes, true, letGo);
  return 0;
}

int StoreDisk::Identify(const std::string&, FileIdentity&) { return ENOSYS; }

std::int64_t StoreDisk::TimestampGranularityNs(const std::string&) { return 2'000'000'000; }

std::int64_t StoreDisk::NowNs() { return 0; }

namespace {

std::int64_t Ns(const timespec& t) { return static_cast<std::int64_t>(t.tv_sec) * 1'000'000'000 + t.tv_nsec; }

// How finely a file system stamps its files. Those with nanosecond stamps
// take them from the kernel's coarse clock, which moves once a timer tick
// (at most 10 ms); any other is taken at 2 s, the coarsest there is (FAT).
std::int64_t GranularityOf(const struct statfs& fs) {
  constexpr std::int64_t kTickBound = 20'000'000, kUnknown = 2'000'000'000;
  switch (static_cast<unsigned long>(fs.f_type)) {
    case 0xEF53:      // ext2, ext3, ext4
    case 0x58465342:  // xfs
    case 0x9123683E:  // btrfs
    case 0x01021994:  // tmpfs
    case 0x794C7630:  // overlayfs
    case 0xF2F52010:  // f2fs
      return kTickBound;
    default:
      return kUnknown;
  }
}

}  // namespace

int RealStoreDisk::Identify(const std::string& path, FileIdentity& id) {
  struct stat st;
  if (::stat(path.c_str(), &st) != 0) return errno;
  if (!S_ISREG(st.st_mode)) return EINVAL;
  id = {static_cast<std::uint64_t>(st.st_dev), static_cast<std::uint64_t>(st.st_ino),
        static_cast<std::uint64_t>(st.st_size), Ns(st.st_mtim), Ns(st.st_ctim)};
  return 0;
}

std::int64_t RealStoreDisk::TimestampGranularityNs(const std::string& path) {
  struct statfs fs;
  return ::statfs(path.c_str(), &fs) == 0 ? GranularityOf(fs) : StoreDisk::TimestampGranularityNs(path);
}

std::int64_t RealStoreDisk::NowNs() {
  timespec now;
  ::clock_gettime(CLOCK_REALTIME, &now);
  return Ns(now);
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

namespace {

// A buffer that is not filled before the file's bytes are read into it.
class RawBuffer {
 public:
  explicit RawBuffer(std::size_t size) : bytes_(new char[size]), size_(size) {}
  char* data() { return bytes_.get(); }
  std::size_t size() const { return size_; }
  // Twice as large, keeping the first `used` bytes.
  void Grow(std::size_t used) {
    RawBuffer larger(size_ * 2);
    std::copy_n(bytes_.get(), used, larger.data());
    std::swap(*this, larger);
  }

 private:
  std::unique_ptr<char[]> bytes_;
  std::size_t size_;
};

// Each read takes a block of this size behind what the search still needs
// (the line it is in), so a key near the top of a long quest costs one
// block, and one buffer that stays in the cache serves a whole long file.
// A smaller file takes a block of its own size, and so a smaller buffer.
constexpr std::size_t kBlock = 256 * 1024;
constexpr std::size_t kSmallestBlock = 4096;

}  // namespace

int RealStoreDisk::Scan(const std::string& path, const Looker& look) {
  Fd in{OpenRegularFile(path)};
  if (in.fd < 0) return errno;
  struct stat st;
  std::size_t block = kBlock;
  // One byte more than the file holds, so that one read takes the whole file.
  if (::fstat(in.fd, &st) == 0) block = std::clamp(static_cast<std::size_t>(st.st_size) + 1, kSmallestBlock, kBlock);
  RawBuffer buffer(2 * block);
  std::size_t held = 0;
  for (;;) {
    if (buffer.size() - held < block) buffer.Grow(held);  // a line longer than a block
    ssize_t n = ::read(in.fd, buffer.data() + held, block);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return errno;
    std::size_t letGo = 0;
    // Only a read of nothing tells of the end: a file may grow while it is read.
    if (n == 0) {
      look({buffer.data(), held}, true, letGo);
      return 0;
    }
    held += static_cast<std::size_t>(n);
    if (look({buffer.data(), held}, false, letGo)) return 0;
    std::memmove(buffer.data(), buffer.data() + letGo, held - letGo);
    held -= letGo;
  }
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

namespace {

// Gives a file just made the mode and, where allowed, the owner of the file
// it replaces. Only a privileged writer can give a file to its owner; the
// others keep it as theirs. Changing the owner clears set-id bits, so the
// mode follows.
int GiveMeta(int fd, const FileMeta* like) {
  if (!like) return 0;
  (void)!::fchown(fd, like->uid, like->gid);
  return ErrorOr(::fchmod(fd, like->mode) == 0);
}

// The bytes written from `offset` on, and synced.
int WriteAll(int fd, std::size_t offset, std::string_view bytes) {
  while (!bytes.empty()) {
    ssize_t n = ::pwrite(fd, bytes.data(), bytes.size(), static_cast<off_t>(offset));
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return n < 0 ? errno : EIO;
    bytes.remove_prefix(static_cast<std::size_t>(n));
    offset += static_cast<std::size_t>(n);
  }
  return ErrorOr(::fsync(fd) == 0);
}

// A file system without unnamed files, a kernel that does not know them (it
// reads the flag as a folder's, or refuses it as the browser's and node's
// file systems of the web build do), or a machine without /proc.
bool NoUnnamedFiles(int error) { return error == EOPNOTSUPP || error == EISDIR || error == EINVAL || error == ENOENT; }

}  // namespace

int RealStoreDisk::Create(const std::string& path, const FileMeta* like) {
  // A copy of a file is made private first and given its mode once made.
  Fd out{::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, like ? 0600 : 0666)};
  if (out.fd < 0) return errno;
  int error = GiveMeta(out.fd, like);
  if (error) ::unlink(path.c_str());
  return error;
}

int RealStoreDisk::CreateWith(const std::string& path, std::string_view bytes, const FileMeta* like) {
  // The file has no name until it holds every byte: should the writer die
  // or the disk fill meanwhile, it goes with its descriptor.
  Fd out{::open(FolderOf(path).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, like ? 0600 : 0666)};
  if (out.fd < 0) return NoUnnamedFiles(errno) ? StoreDisk::CreateWith(path, bytes, like) : errno;
  if (int error = GiveMeta(out.fd, like)) return error;
  if (int error = WriteAll(out.fd, 0, bytes)) return error;
  std::string self = "/proc/self/fd/" + std::to_string(out.fd);
  if (::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0) return 0;
  return NoUnnamedFiles(errno) ? StoreDisk::CreateWith(path, bytes, like) : errno;
}

int RealStoreDisk::WriteAt(const std::string& path, std::size_t offset, std::string_view bytes) {
  Fd out{::open(path.c_str(), O_WRONLY | O_CLOEXEC)};
  if (out.fd < 0) return errno;
  return WriteAll(out.fd, offset, bytes);
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
