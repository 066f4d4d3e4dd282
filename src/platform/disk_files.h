#pragma once
#include "forms/services.h"

namespace fw {

// The file operations on this machine's disk. Copy and Head read regular
// files only (a link to one is fine): anything else is missing, and never
// blocks them.
class DiskFiles : public FileSystem {
 public:
  void Copy(const std::string& from, const std::string& to) override;
  void MakeDir(const std::string& path) override;
  void Remove(const std::string& path) override;
  bool Exists(const std::string& path) override;
  bool IsDirectory(const std::string& path) override;
  bool Writable(const std::string& folder) override;
  std::string Head(const std::string& path, std::size_t bytes) override;
};

}  // namespace fw
