#pragma once
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/image_cache.h"
#include "store/profile_image.h"
#include "store/profile_index.h"
#include "store/store_disk.h"

namespace fw {

// The quest store: profile files ("[section]" and "key=value" lines), read and
// written key by key. A read is served from an image of the file kept in
// memory only while the file is provably the one the image was made of (see
// ImageCache), so a test play sees every write the editor made a moment
// before, and a read sees every write any other program made.
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

  // The file's text indexed by section, as reads see it (kept while the file
  // is unchanged); null when it cannot be read, as TryReadINI fails.
  std::shared_ptr<const ProfileIndex> ReadIndex(std::string_view path) const;

  // The bytes the images of the files read take.
  std::size_t ImageMemoryBytes() const { return images_->MemoryBytes(); }

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

  // The whole text of a profile file; nullopt when it cannot be read.
  std::optional<std::string> ReadText(std::string_view path) const;

  // Takes every section of that name out of the file, as one change under
  // the same safety as WriteINIKeys. True when nothing is left to take (a
  // missing file or section counts); false when the file could not be written.
  bool DeleteSection(std::string_view path, std::string_view section) const;

  // Puts the whole text into the file in one step, as CopyFile writes.
  // False, with the file untouched, when it cannot be written.
  bool WriteText(std::string_view path, std::string_view text) const;

  // Replaces `to` with a copy of `from` in one step: `to` is the old file or
  // the whole copy, never a part. False, with `to` untouched, when `from`
  // cannot be read or `to` cannot be written.
  bool CopyFile(std::string_view from, std::string_view to) const;

  // Keeps a copy of the file in `folder` (made when missing) before it is
  // replaced, named by the file's own name and `stamp` ("castle 2026-11-23
  // 14.50.34.fbw"), and removes the oldest copies of that name past `keep`.
  // True when there was nothing to keep or the copy is made.
  bool KeepBackup(std::string_view path, const std::string& folder, std::string_view stamp,
                  std::size_t keep) const;

  // An exclusive lock on a file of userDir, held while `lock` lives: 0,
  // EWOULDBLOCK when another program holds it, or another errno value.
  int TryLock(std::string_view name, std::unique_ptr<StoreDisk::Lock>& lock) const;

  // The host path a profile path names: a bare name lies in userDir.
  std::string Resolve(std::string_view path) const;

  const std::string& userDir() const { return userDir_; }

 private:
  // A rewrite of the file through the store, whose new text the images keep.
  bool Rewrite(const std::string& host, const std::function<bool(std::string&)>& edit) const;

  std::string userDir_;
  std::shared_ptr<StoreDisk> disk_;
  std::shared_ptr<ImageCache> images_ = std::make_shared<ImageCache>();
};

// The grammar on a file's bytes, for the store, the fuzzer and the benchmarks.
// The longest value a read gives back; the rest of a longer value is cut.
inline constexpr std::size_t kMaxValueLength = 8999;

// The value of section/key in a profile text ("" when absent), cut to
// kMaxValueLength characters.
std::string_view FindProfileValue(std::string_view text, std::string_view section,
                                  std::string_view key);

// The search for one value in a profile text that arrives block by block
// from the start of the file, so that a read can stop once the value's line
// has come and need not hold what it has searched: the value found is the
// one FindProfileValue gives on the whole text.
class ProfileSeek {
 public:
  ProfileSeek(std::string_view section, std::string_view key);
  // Looks at the text so far, from the file's first byte on, less what
  // earlier looks let go of; `atEnd` once no more will come. True when the
  // answer is known.
  bool Look(std::string_view text, bool atEnd);
  // How many bytes at the start of the text last looked at are searched and
  // no longer needed: the next look is given the text from there on.
  std::size_t letGo() const { return letGo_; }
  // The value, cut to kMaxValueLength; "" when absent. It points into the
  // text last looked at.
  std::string_view value() const { return value_; }

 private:
  bool Finish(std::string_view value);
  bool LetGo(std::size_t searched);

  std::string_view section_, key_, value_;
  bool done_ = false, inSection_ = false, atFileStart_ = true;
  std::size_t letGo_ = 0;
};

// The profile text without any section of that name (its header and its
// lines up to the next header). An empty name leaves the text as it is.
std::string RemoveProfileSection(std::string_view text, std::string_view section);

// One key of a profile text, as ReadINI would give its value.
struct ProfileEntry {
  std::string section, key, value;
};
// Every key of a profile text in file order; lines before the first header
// belong to no section and are left out.
std::vector<ProfileEntry> ProfileEntries(std::string_view text);

// The whole profile text after writing section/key = value into it. An empty
// section name leaves the text as it is.
std::string SetProfileValue(std::string_view text, std::string_view section, std::string_view key,
                            std::string_view value);
// The same on the text in place, which saves a copy of a long file; false
// when the text is left as it was.
bool SetProfileValueIn(std::string& text, std::string_view section, std::string_view key, std::string_view value);

}  // namespace fw
