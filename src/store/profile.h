#pragma once
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "store/profile_image.h"
#include "store/store_disk.h"

namespace fw {

// The quest store: profile files ("[section]" and "key=value" lines), read and
// written key by key. Nothing is cached: every call opens the file afresh, so a
// test play sees every write the editor made a moment before.
class QuestStore {
 public:
  // userDir: the folder (UTF-8, host form) that a bare file name means.
  explicit QuestStore(std::string userDir,
                      std::shared_ptr<StoreDisk> disk = std::make_shared<RealStoreDisk>());

  // The value of the key, or "" when the file, section or key is missing or
  // anything goes wrong. Never throws. Only a regular file (or a link to one)
  // is read; anything else reads as missing.
  std::string ReadINI(std::string_view path, std::string_view section, std::string_view key) const;

  // As ReadINI, but nullopt when the file cannot be read: missing, not a
  // regular file, or refused.
  std::optional<std::string> TryReadINI(std::string_view path, std::string_view section,
                                        std::string_view key) const;

  // The whole file read once, for a tool that looks at all of it; null when
  // it cannot be read, as TryReadINI fails.
  std::shared_ptr<const ProfileImage> ReadImage(std::string_view path) const;

  // Writes the key; silent when it cannot. Atomic: the file on disk is the old
  // one or the new one, never a torn mix.
  void WriteINI(std::string_view path, std::string_view section, std::string_view key,
                std::string_view value) const;

  // One key to write, as WriteINI takes it.
  struct Entry {
    std::string_view section, key, value;
  };
  // Writes the keys in order as one change: the file on disk is the old one or
  // the one with every key written. A write through a link goes to the file it
  // names. False when the file could not be written: its folder is missing,
  // it is not a regular file, its permissions forbid it, or the disk failed.
  // A name or value ends at its first code 0, as a C string would.
  bool WriteINIKeys(std::string_view path, std::span<const Entry> entries) const;

  // The host path a profile path names: a bare name lies in userDir.
  std::string Resolve(std::string_view path) const;

  const std::string& userDir() const { return userDir_; }

 private:
  std::string userDir_;
  std::shared_ptr<StoreDisk> disk_;
};

// The grammar on a file's bytes, for the store, the fuzzer and the benchmarks.
// The longest value a read gives back; the rest of a longer value is cut.
inline constexpr std::size_t kMaxValueLength = 8999;

// The value of section/key in a profile text ("" when absent), cut to
// kMaxValueLength characters.
std::string_view FindProfileValue(std::string_view text, std::string_view section,
                                  std::string_view key);

// The whole profile text after writing section/key = value into it. An empty
// section name leaves the text as it is.
std::string SetProfileValue(std::string_view text, std::string_view section, std::string_view key,
                            std::string_view value);

}  // namespace fw
