// Reading and writing profile files on disk. Every call opens the file
// afresh; a write replaces the file in one step under a lock on its folder.
#include <algorithm>
#include <string>

#include "forms/paths.h"
#include "store/profile.h"
#include "store/safe_write.h"

namespace fw {
namespace {

// Names and values pass through the platform as C strings, so the code 0
// ends them: it never reaches the file.
std::string_view UpToNul(std::string_view s) { return s.substr(0, s.find('\0')); }

bool Named(const QuestStore::Entry& e) { return !UpToNul(e.section).empty() && !UpToNul(e.key).empty(); }

// The text with every key written in order: the first on the text as read,
// the rest on the result so far.
std::string WithEntries(std::string_view text, std::span<const QuestStore::Entry> entries) {
  std::string updated;
  bool first = true;
  for (const QuestStore::Entry& e : entries) {
    if (!Named(e)) continue;
    updated = SetProfileValue(first ? text : std::string_view(updated), UpToNul(e.section), UpToNul(e.key),
                              UpToNul(e.value));
    first = false;
  }
  return updated;
}

}  // namespace

QuestStore::QuestStore(std::string userDir, std::shared_ptr<StoreDisk> disk)
    : userDir_(std::move(userDir)), disk_(std::move(disk)) {}

std::string QuestStore::Resolve(std::string_view path) const {
  if (HasDirectoryPart(path)) return HostPath(path);
  return userDir_ + "/" + HostPath(path);
}

std::string QuestStore::ReadINI(std::string_view path, std::string_view section, std::string_view key) const {
  if (section.empty() || key.empty()) return {};
  return TryReadINI(path, section, key).value_or("");
}

std::optional<std::string> QuestStore::TryReadINI(std::string_view path, std::string_view section,
                                                  std::string_view key) const {
  std::string text;
  if (path.empty() || disk_->Read(Resolve(path), text, nullptr) != 0) return std::nullopt;
  return std::string(FindProfileValue(text, UpToNul(section), UpToNul(key)));
}

std::shared_ptr<const ProfileImage> QuestStore::ReadImage(std::string_view path) const {
  std::string text;
  if (path.empty() || disk_->Read(Resolve(path), text, nullptr) != 0) return nullptr;
  return MakeProfileImage(std::move(text));
}

void QuestStore::WriteINI(std::string_view path, std::string_view section, std::string_view key,
                          std::string_view value) const {
  const Entry entry{section, key, value};
  WriteINIKeys(path, {&entry, 1});
}

bool QuestStore::WriteINIKeys(std::string_view path, std::span<const Entry> entries) const {
  if (std::none_of(entries.begin(), entries.end(), Named)) return true;
  if (path.empty()) return false;
  return RewriteFile(*disk_, Resolve(path), [&](std::string_view text) { return WithEntries(text, entries); });
}

}  // namespace fw
