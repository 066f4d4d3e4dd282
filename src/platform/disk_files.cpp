#include "platform/disk_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "forms/failure.h"
#include "forms/regular_file.h"

namespace fs = std::filesystem;

namespace fw {
namespace {

// Why a file operation failed, in the words a message box gives the user.
std::string Why(int error) {
  switch (error) {
    case ENOSPC:
    case EDQUOT: return "no space left on the disk";
    case EFBIG: return "the file is larger than the disk allows";
    case EACCES:
    case EPERM: return "permission denied";
    case EROFS: return "the disk is read-only";
    case ENAMETOOLONG: return "the name is too long";
    case ENOENT: return "its folder is missing";
    case ENOTDIR: return "a file stands where a folder should be";
    case EEXIST: return "something of that name is already there";
    case EIO: return "the disk failed";
    default: {
      std::string text = std::strerror(error);
      if (!text.empty()) text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
      return text;
    }
  }
}

// The file a copy replaces, links followed: only a regular file or nothing
// may be there, so a FIFO is never waited on nor a device written. "" when
// the copy may go there, else why not.
std::string CopyTarget(const std::string& to, const struct stat& source, fs::path& real) {
  std::error_code ec;
  real = fs::weakly_canonical(to, ec);
  if (ec) return Why(ec.value());
  struct stat st;
  if (::stat(real.c_str(), &st) != 0) return errno == ENOENT ? "" : Why(errno);
  if (!S_ISREG(st.st_mode)) return "something that is not a file has its name";
  if (st.st_dev == source.st_dev && st.st_ino == source.st_ino) return "it is the file it would be copied from";
  return "";
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

// The hidden name a copy's new file has beside its target while it is named.
fs::path NameBeside(const fs::path& target) {
  return target.parent_path() / ("." + target.filename().string() + ".fw-copy-" + std::to_string(::getpid()));
}

// The copy's bytes go into a new file beside the target, which takes the
// target's name only once it is whole and on the disk: a full disk or a copy
// cut short leaves the old file as it was. The new file has no name while it
// is written where the file system allows, so a copier killed meanwhile
// leaves nothing; elsewhere it has a hidden one, removed when the copy fails.
class NewFileBeside {
 public:
  explicit NewFileBeside(const fs::path& target) : target_(target) {
    fd_ = ::open(target.parent_path().c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
    if (fd_ >= 0) return;
    named_ = NameBeside(target);
    ::unlink(named_.c_str());  // a leftover of an earlier process of this number
    fd_ = ::open(named_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  }
  ~NewFileBeside() {
    if (fd_ >= 0) ::close(fd_);
    if (!named_.empty()) ::unlink(named_.c_str());
  }
  int fd() const { return fd_; }

  // Synced, then put in the target's place.
  bool Replace() {
    if (::fsync(fd_) != 0) return false;
    if (named_.empty()) {
      named_ = NameBeside(target_);
      ::unlink(named_.c_str());
      std::string self = "/proc/self/fd/" + std::to_string(fd_);
      if (::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, named_.c_str(), AT_SYMLINK_FOLLOW) != 0) {
        named_.clear();  // nothing was made
        return false;
      }
    }
    if (::rename(named_.c_str(), target_.c_str()) != 0) return false;
    named_.clear();
    Fd folder{::open(target_.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
    if (folder.fd >= 0) ::fsync(folder.fd);
    return true;
  }

 private:
  fs::path target_, named_;
  int fd_ = -1;
};

}  // namespace

void DiskFiles::Copy(const std::string& from, const std::string& to) {
  Fd in{OpenRegularFile(from)};
  struct stat source;
  if (in.fd < 0 || ::fstat(in.fd, &source) != 0)
    throw Failure(errno == ENOENT || errno == EINVAL ? "its source file is missing"
                                                     : "its source file can't be read (" + Why(errno) + ")");
  fs::path target;
  if (std::string refused = CopyTarget(to, source, target); !refused.empty()) throw Failure(refused);
  NewFileBeside out(target);
  if (out.fd() < 0 || !CopyBytes(in.fd, out.fd()) || ::fchmod(out.fd(), source.st_mode & 07777) != 0 ||
      !out.Replace())
    throw Failure(Why(errno));
}

void DiskFiles::MakeDir(const std::string& path) {
  std::error_code ec;
  // Only the last folder is made: a missing parent or an existing folder fails.
  if (!fs::create_directory(path, ec) || ec) throw Failure(Why(ec ? ec.value() : EEXIST));
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

bool DiskFiles::Writable(const std::string& folder) {
  return IsDirectory(folder) && ::access(folder.c_str(), W_OK | X_OK) == 0;
}

std::string DiskFiles::Head(const std::string& path, std::size_t bytes) {
  return ReadRegularFile(path, bytes).value_or("");
}

}  // namespace fw
