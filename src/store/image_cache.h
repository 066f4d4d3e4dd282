#pragma once
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "store/profile_index.h"
#include "store/store_disk.h"

namespace fw {

// The indexed text of each profile file read, kept while the file's identity
// is unchanged, so that a read of a file nothing has touched costs one look
// at its identity. A file stamped within its file system's timestamp
// granularity of the moment it was read may yet be rewritten with the same
// size and stamps (git's racy timestamps): its image is trusted only once its
// bytes, read again, are the same. Safe to share between threads.
class ImageCache {
 public:
  // The image of the file at a host path, or null when it cannot be had
  // (missing, not a regular file, a disk that knows no identities, or a file
  // that changed while it was read): the caller then reads the disk.
  std::shared_ptr<const ProfileIndex> Get(StoreDisk& disk, const std::string& host);
  // The text this program just wrote to the file: the next read that finds
  // the same bytes on disk keeps it without indexing them again.
  void Wrote(StoreDisk& disk, const std::string& host, std::string text);
  void Forget(const std::string& host);
  // The bytes every image held takes.
  std::size_t MemoryBytes() const;

 private:
  struct Entry {
    FileIdentity id;
    bool trusted = false;
    std::shared_ptr<const ProfileIndex> image;
  };
  // Trusted when the file was stamped longer ago than its file system can tell apart.
  bool Settled(StoreDisk& disk, const std::string& host, const FileIdentity& id);

  mutable std::mutex mutex_;
  std::map<std::string, Entry> entries_;
  std::map<std::uint64_t, std::int64_t> granularity_;  // by device
};

}  // namespace fw
