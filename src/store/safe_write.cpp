// A file replaced in one step: the new text goes to a temporary file beside
// it, reaches the disk, and is renamed over it.
#include "store/safe_write.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace fw {
namespace {

enum class Outcome { kDone, kFailed, kFolderRefuses };

// How a folder refuses a new entry (a read-only folder holding a writable
// file), as against a disk that is full or failing.
bool FolderRefuses(int error) { return error == EACCES || error == EPERM || error == EROFS; }

std::string TempPrefix(const std::string& real) { return "." + NameOf(real) + ".fw-"; }

// Every writer holds the folder's lock while its temporary file exists, so
// one found under the lock was left by a writer that died.
void RemoveStaleTemps(StoreDisk& disk, const std::string& real) {
  std::string folder = FolderOf(real), prefix = TempPrefix(real);
  for (const std::string& name : disk.List(folder))
    if (name.starts_with(prefix)) disk.Remove(PathIn(folder, name));
}

Outcome ReplaceWithNewFile(StoreDisk& disk, const std::string& real, std::string_view text, const FileMeta* old) {
  std::string folder = FolderOf(real);
  std::string temp = PathIn(folder, TempPrefix(real) + std::to_string(::getpid()));
  if (int error = disk.CreateWith(temp, text, old))
    return FolderRefuses(error) ? Outcome::kFolderRefuses : Outcome::kFailed;
  if (int error = disk.Rename(temp, real)) {
    disk.Remove(temp);
    return FolderRefuses(error) ? Outcome::kFolderRefuses : Outcome::kFailed;
  }
  disk.SyncFolder(folder);
  return Outcome::kDone;
}

// The last resort where the folder takes no new file: the file is written
// over from its first changed byte and cut only once every new byte has
// landed, so a writer killed midway leaves it no shorter than the shorter of
// the two texts. A failure puts the old bytes back.
bool RewriteInPlace(StoreDisk& disk, const std::string& real, std::string_view old, std::string_view text) {
  std::size_t same = std::mismatch(old.begin(), old.end(), text.begin(), text.end()).first - old.begin();
  if (disk.WriteAt(real, same, text.substr(same)) == 0 &&
      (text.size() >= old.size() || disk.Truncate(real, text.size()) == 0))
    return true;
  disk.WriteAt(real, same, old.substr(same));
  disk.Truncate(real, old.size());
  return false;
}

}  // namespace

bool RewriteFile(StoreDisk& disk, const std::string& path, const TextEdit& edit) {
  std::optional<std::string> written;
  return RewriteFile(disk, path, edit, written);
}

bool RewriteFile(StoreDisk& disk, const std::string& path, const TextEdit& edit, std::optional<std::string>& written) {
  std::string real;
  if (disk.Locate(path, real) != 0) return false;
  // The lock is on the folder: a rename replaces the file, not its folder.
  auto lock = disk.LockFolder(FolderOf(real));
  if (!lock) return false;
  RemoveStaleTemps(disk, real);
  // The text is edited where it was read: a long quest is held once.
  std::string text;
  FileMeta meta;
  int readError = disk.Read(real, text, &meta);
  if (readError != 0 && readError != ENOENT) return false;
  bool exists = readError == 0;
  if (!edit(text) && exists) return true;
  // A rename would replace a file whatever its mode says.
  if (exists && disk.CheckWritable(real) != 0) return false;
  Outcome outcome = ReplaceWithNewFile(disk, real, text, exists ? &meta : nullptr);
  bool done = outcome == Outcome::kDone;
  if (outcome == Outcome::kFolderRefuses && exists) {
    // The old text again, for the rare writer whose folder takes no new file;
    // the folder's lock keeps the other writers out meanwhile.
    std::string old;
    done = disk.Read(real, old, nullptr) == 0 && RewriteInPlace(disk, real, old, text);
  }
  if (done) written = std::move(text);
  return done;
}

}  // namespace fw
