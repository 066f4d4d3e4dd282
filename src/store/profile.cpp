// Reading and writing profile files on disk. Every call opens the file
// afresh; a write replaces the file in one step under a lock on its folder.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <string>

#include "shell/paths.h"
#include "store/profile.h"

namespace fw {
namespace {

// Closes a descriptor when it goes out of scope.
struct Fd {
  int fd = -1;
  ~Fd() {
    if (fd >= 0) ::close(fd);
  }
};

// The whole file in one buffer; false when it cannot be read.
bool ReadAll(int fd, std::string& out) {
  struct stat st;
  if (::fstat(fd, &st) != 0) return false;
  // One byte more than the file: the read that fills it tells of growth.
  out.resize(static_cast<std::size_t>(st.st_size) + 1);
  std::size_t got = 0;
  for (;;) {
    if (got == out.size()) out.resize(out.size() * 2);  // the file grew meanwhile
    ssize_t n = ::read(fd, out.data() + got, out.size() - got);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return false;
    if (n == 0) break;
    got += static_cast<std::size_t>(n);
  }
  out.resize(got);
  return true;
}

bool WriteAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    ssize_t n = ::write(fd, bytes.data(), bytes.size());
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(n));
  }
  return true;
}

// The folder a host path lies in.
std::string FolderOf(const std::string& path) {
  std::size_t slash = path.find_last_of('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

// A temporary name beside the file, unique to this process and call.
std::string TempName(const std::string& path) {
  static std::atomic<unsigned> counter{0};
  std::string folder = FolderOf(path);
  std::string base = path.substr(path.find_last_of('/') + 1);
  return folder + "/." + base + ".fw-" + std::to_string(::getpid()) + "-" + std::to_string(counter++);
}

// Writes the text to a new file beside the path and renames it over the
// path: the file on disk is the old one or the new one, never a mix.
bool ReplaceAtomically(const std::string& path, std::string_view text, int folderFd, const struct stat* old) {
  std::string temp = TempName(path);
  Fd out{::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666)};
  if (out.fd < 0) return false;
  bool ok = WriteAll(out.fd, text) && (!old || ::fchmod(out.fd, old->st_mode & 07777) == 0) &&
            ::fsync(out.fd) == 0 && ::rename(temp.c_str(), path.c_str()) == 0;
  if (!ok) {
    ::unlink(temp.c_str());
    return false;
  }
  ::fsync(folderFd);
  return true;
}

// Where no new file can be made beside it, the file is rewritten in place.
bool RewriteInPlace(const std::string& path, std::string_view text) {
  Fd out{::open(path.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC)};
  return out.fd >= 0 && WriteAll(out.fd, text) && ::fsync(out.fd) == 0;
}

}  // namespace

QuestStore::QuestStore(std::string userDir) : userDir_(std::move(userDir)) {}

std::string QuestStore::Resolve(std::string_view path) const {
  if (HasDirectoryPart(path)) return HostPath(path);
  return userDir_ + "/" + HostPath(path);
}

std::string QuestStore::ReadINI(std::string_view path, std::string_view section, std::string_view key) const {
  if (path.empty() || section.empty() || key.empty()) return {};
  Fd in{::open(Resolve(path).c_str(), O_RDONLY | O_CLOEXEC)};
  std::string text;
  if (in.fd < 0 || !ReadAll(in.fd, text)) return {};
  return std::string(FindProfileValue(text, section, key));
}

void QuestStore::WriteINI(std::string_view path, std::string_view section, std::string_view key,
                          std::string_view value) const {
  const Entry entry{section, key, value};
  WriteINIKeys(path, {&entry, 1});
}

bool QuestStore::WriteINIKeys(std::string_view path, std::span<const Entry> entries) const {
  auto named = [](const Entry& e) { return !e.section.empty() && !e.key.empty(); };
  if (std::none_of(entries.begin(), entries.end(), named)) return true;
  if (path.empty()) return false;
  std::string host = Resolve(path);
  // The lock is on the folder: a rename replaces the file, not its folder.
  Fd folder{::open(FolderOf(host).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
  if (folder.fd < 0) return false;
  while (::flock(folder.fd, LOCK_EX) != 0)
    if (errno != EINTR) return false;
  std::string text;
  struct stat st;
  bool exists = false;
  {
    Fd in{::open(host.c_str(), O_RDONLY | O_CLOEXEC)};
    if (in.fd >= 0) {
      if (!ReadAll(in.fd, text) || ::fstat(in.fd, &st) != 0) return false;
      exists = true;
    } else if (errno != ENOENT) {
      return false;
    }
  }
  // The first key is set on the text as read, the rest on the result so far.
  std::string updated;
  bool first = true;
  for (const Entry& e : entries) {
    if (!named(e)) continue;
    updated = SetProfileValue(first ? std::string_view(text) : std::string_view(updated), e.section, e.key, e.value);
    first = false;
  }
  if (exists && updated == text) return true;
  if (ReplaceAtomically(host, updated, folder.fd, exists ? &st : nullptr)) return true;
  return exists && RewriteInPlace(host, updated);
}

}  // namespace fw
