#pragma once
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace fw {

// Mode and owner of a file, which a replacement keeps.
struct FileMeta {
  unsigned mode = 0;  // permission bits
  unsigned uid = 0, gid = 0;
};

// Who a file is and how it stands: a file rewritten by any program, in any
// way, differs in one of these afterwards, but for a write of the same size
// within the timestamps' granularity of the last one, which a reader must
// check by the bytes.
struct FileIdentity {
  std::uint64_t device = 0, inode = 0, size = 0;
  std::int64_t modifiedNs = 0, changedNs = 0;
  bool operator==(const FileIdentity&) const = default;
};

// The file operations the quest store is made of, one platform call or a
// short fixed run of them each, so that tests can put an in-memory disk with
// chosen failures in place of the real one. Paths are host paths; an int
// result is 0 on success or the errno value of the failure.
class StoreDisk {
 public:
  virtual ~StoreDisk() = default;

  // Held while it lives.
  class Lock {
   public:
    virtual ~Lock() = default;
  };

  // The path of the file that `path` names, every link followed: for an
  // existing file its real path, for a missing one its folder's real path and
  // its name. ENOENT when the folder is missing or a link leads nowhere.
  virtual int Locate(const std::string& path, std::string& real) = 0;

  // An exclusive lock on a folder, waited for; null when it cannot be taken.
  virtual std::unique_ptr<Lock> LockFolder(const std::string& folder) = 0;

  // The whole of a regular file (a link to one is fine), never blocking.
  // ENOENT when nothing is there; another error when it cannot be read or is
  // not a regular file. `meta` may be null.
  virtual int Read(const std::string& path, std::string& bytes, FileMeta* meta) = 0;

  // The file read from its start block by block, as Read reads it: after
  // each block `look` is given the bytes so far, less the leading ones it let
  // go of in `letGo` the time before, with `atEnd` once the end is reached;
  // the read stops as soon as it returns true. Errors as Read. This one reads
  // the whole file first; a disk may stop sooner, and hold less.
  using Looker = std::function<bool(std::string_view bytes, bool atEnd, std::size_t& letGo)>;
  virtual int Scan(const std::string& path, const Looker& look);

  // 0 when this process may write the file, as opening it for writing would
  // allow.
  virtual int CheckWritable(const std::string& path) = 0;

  // The names in a folder; empty when it cannot be listed.
  virtual std::vector<std::string> List(const std::string& folder) = 0;

  // Makes a new, empty file; never opens one that exists. With `like`, the
  // new file gets its mode and, where allowed, its owner.
  virtual int Create(const std::string& path, const FileMeta* like) = 0;

  // Makes a new file holding the bytes, synced to the disk, as Create and
  // WriteAt would; nothing is left on a failure. Where the file system has
  // unnamed files, the name appears only once every byte is there, so a
  // writer killed meanwhile leaves nothing behind. This one creates and
  // then writes.
  virtual int CreateWith(const std::string& path, std::string_view bytes, const FileMeta* like);

  // Writes the bytes into an existing file from `offset` on, without cutting
  // it, and makes them reach the disk.
  virtual int WriteAt(const std::string& path, std::size_t offset, std::string_view bytes) = 0;

  // Cuts the file to `size` bytes, and makes that reach the disk.
  virtual int Truncate(const std::string& path, std::size_t size) = 0;

  virtual int Rename(const std::string& from, const std::string& to) = 0;
  virtual int Remove(const std::string& path) = 0;

  // Makes the folder's entries (a rename in it) reach the disk.
  virtual void SyncFolder(const std::string& folder) = 0;

  // Makes a folder; 0 when it is there afterwards.
  virtual int MakeFolder(const std::string& path) = 0;

  // The identity of the regular file a path names (links followed). This
  // one knows no identities (ENOSYS), so nothing read from it is kept.
  virtual int Identify(const std::string& path, FileIdentity& id);
  // How finely the file system that holds the file stamps its times, in
  // nanoseconds; 2 s, the coarsest there is, where unknown.
  virtual std::int64_t TimestampGranularityNs(const std::string& path);
  // The time now, on the clock the file system stamps files by.
  virtual std::int64_t NowNs();

  // An exclusive lock on a lock file (made when missing), not waited for:
  // EWOULDBLOCK when another holder has it. Held while `lock` lives, and
  // never longer than the process.
  virtual int TryLockFile(const std::string& path, std::unique_ptr<Lock>& lock) = 0;
};

// The folder a host path lies in, and its last part.
std::string FolderOf(const std::string& path);
std::string NameOf(const std::string& path);
// The path of a name in a folder.
std::string PathIn(const std::string& folder, const std::string& name);

// This machine's disk.
class RealStoreDisk : public StoreDisk {
 public:
  int Locate(const std::string& path, std::string& real) override;
  std::unique_ptr<Lock> LockFolder(const std::string& folder) override;
  int Read(const std::string& path, std::string& bytes, FileMeta* meta) override;
  int Scan(const std::string& path, const Looker& look) override;
  int CheckWritable(const std::string& path) override;
  std::vector<std::string> List(const std::string& folder) override;
  int Create(const std::string& path, const FileMeta* like) override;
  int CreateWith(const std::string& path, std::string_view bytes, const FileMeta* like) override;
  int WriteAt(const std::string& path, std::size_t offset, std::string_view bytes) override;
  int Truncate(const std::string& path, std::size_t size) override;
  int Rename(const std::string& from, const std::string& to) override;
  int Remove(const std::string& path) override;
  void SyncFolder(const std::string& folder) override;
  int MakeFolder(const std::string& path) override;
  int Identify(const std::string& path, FileIdentity& id) override;
  std::int64_t TimestampGranularityNs(const std::string& path) override;
  std::int64_t NowNs() override;
  int TryLockFile(const std::string& path, std::unique_ptr<Lock>& lock) override;
};

}  // namespace fw
