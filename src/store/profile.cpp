// Reading and writing profile files on disk. A read is served from the
// file's image while the file is unchanged; a write replaces the file in one
// step under a lock on its folder, and the image follows it.
#include <algorithm>
#include <cerrno>
#include <utility>
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

// Writes every key in order into the text; false when none changed it.
bool WriteEntries(std::string& text, std::span<const QuestStore::Entry> entries) {
  bool changed = false;
  for (const QuestStore::Entry& e : entries)
    if (Named(e)) changed |= SetProfileValueIn(text, UpToNul(e.section), UpToNul(e.key), UpToNul(e.value));
  return changed;
}

// Makes the text `whole`; false when it was that already.
bool Replace(std::string& text, std::string whole) {
  if (text == whole) return false;
  text = std::move(whole);
  return true;
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
  if (path.empty()) return std::nullopt;
  std::string host = Resolve(path);
  if (auto image = images_->Get(*disk_, host)) return std::string(image->Value(UpToNul(section), UpToNul(key)));
  // The read stops at the value's line: a key near the top of a long quest
  // costs a small part of a read of the whole file.
  ProfileSeek seek(UpToNul(section), UpToNul(key));
  std::string value;
  auto look = [&](std::string_view bytes, bool atEnd, std::size_t& letGo) {
    if (seek.Look(bytes, atEnd)) {
      value = seek.value();
      return true;
    }
    letGo = seek.letGo();
    return false;
  };
  if (disk_->Scan(host, look) != 0) return std::nullopt;
  return value;
}

std::shared_ptr<const ProfileImage> QuestStore::ReadImage(std::string_view path) const {
  std::optional<std::string> text = ReadText(path);
  if (!text) return nullptr;
  return MakeProfileImage(std::move(*text));
}

std::shared_ptr<const ProfileIndex> QuestStore::ReadIndex(std::string_view path) const {
  if (path.empty()) return nullptr;
  std::string host = Resolve(path), text;
  if (auto image = images_->Get(*disk_, host)) return image;
  if (disk_->Read(host, text, nullptr) != 0) return nullptr;
  return std::make_shared<const ProfileIndex>(std::move(text));
}

bool QuestStore::Rewrite(const std::string& host, const std::function<bool(std::string&)>& edit) const {
  std::optional<std::string> written;
  bool done = RewriteFile(*disk_, host, edit, written);
  if (done && written) images_->Wrote(*disk_, host, std::move(*written));
  else if (!done) images_->Forget(host);
  return done;
}

void QuestStore::WriteINI(std::string_view path, std::string_view section, std::string_view key,
                          std::string_view value) const {
  const Entry entry{section, key, value};
  WriteINIKeys(path, {&entry, 1});
}

bool QuestStore::WriteINIKeys(std::string_view path, std::span<const Entry> entries) const {
  if (std::none_of(entries.begin(), entries.end(), Named)) return true;
  if (path.empty()) return false;
  return Rewrite(Resolve(path), [&](std::string& text) { return WriteEntries(text, entries); });
}

std::optional<std::string> QuestStore::ReadText(std::string_view path) const {
  if (path.empty()) return std::nullopt;
  std::string host = Resolve(path), text;
  if (auto image = images_->Get(*disk_, host)) return image->text();
  if (disk_->Read(host, text, nullptr) != 0) return std::nullopt;
  return text;
}

bool QuestStore::DeleteSection(std::string_view path, std::string_view section) const {
  section = UpToNul(section);
  if (section.empty()) return true;
  if (path.empty()) return false;
  std::string host = Resolve(path), text;
  // A missing file has no section to take, and is not made.
  if (disk_->Read(host, text, nullptr) == ENOENT) return true;
  return Rewrite(host, [&](std::string& text) { return Replace(text, RemoveProfileSection(text, section)); });
}

bool QuestStore::CopyFile(std::string_view from, std::string_view to) const {
  if (from.empty() || to.empty()) return false;
  std::string text;
  if (disk_->Read(Resolve(from), text, nullptr) != 0) return false;
  // The copy is taken over whole, not copied again: a long quest is held once.
  return Rewrite(Resolve(to), [&](std::string& old) {
    if (old == text) return false;
    old = std::move(text);
    return true;
  });
}

bool QuestStore::WriteText(std::string_view path, std::string_view text) const {
  if (path.empty()) return false;
  return RewriteFile(*disk_, Resolve(path), [&](std::string& old) { return Replace(old, std::string(text)); });
}

namespace {

// The stamp and number of a kept copy of `stem`: "castle 2026-11-23
// 14.50.34.fbw" is {"2026-11-23 14.50.34", 0}, "... (2).fbw" has number 2.
// nullopt for any other name.
std::optional<std::pair<std::string, int>> BackupOrder(const std::string& name, const std::string& stem,
                                                       std::size_t stampSize, const std::string& ext) {
  if (!name.starts_with(stem + " ") || !name.ends_with(ext)) return std::nullopt;
  std::string middle = name.substr(stem.size() + 1, name.size() - stem.size() - 1 - ext.size());
  if (middle.size() < stampSize) return std::nullopt;
  std::string stamp = middle.substr(0, stampSize), rest = middle.substr(stampSize);
  if (stamp.find_first_not_of("0123456789-. ") != std::string::npos) return std::nullopt;
  if (rest.empty()) return std::make_pair(stamp, 0);
  if (rest.size() < 4 || !rest.starts_with(" (") || !rest.ends_with(")")) return std::nullopt;
  std::string number = rest.substr(2, rest.size() - 3);
  if (number.empty() || number.size() > 6 || number.find_first_not_of("0123456789") != std::string::npos)
    return std::nullopt;
  return std::make_pair(stamp, std::stoi(number));
}

}  // namespace

bool QuestStore::KeepBackup(std::string_view path, const std::string& folder, std::string_view stamp,
                            std::size_t keep) const {
  std::string host = Resolve(path), text;
  int readError = disk_->Read(host, text, nullptr);
  if (readError == ENOENT) return true;
  if (readError != 0 || disk_->MakeFolder(folder) != 0) return false;
  std::string name = NameOf(host);
  std::size_t dot = name.find_last_of('.');
  std::string stem = dot == std::string::npos || dot == 0 ? name : name.substr(0, dot);
  std::string ext = dot == std::string::npos || dot == 0 ? "" : name.substr(dot);
  std::vector<std::string> names = disk_->List(folder);
  auto taken = [&](const std::string& n) { return std::find(names.begin(), names.end(), n) != names.end(); };
  std::string copy = stem + " " + std::string(stamp) + ext;
  for (int n = 2; taken(copy); ++n) copy = stem + " " + std::string(stamp) + " (" + std::to_string(n) + ")" + ext;
  // A kept copy is not read again: it needs no image.
  if (!RewriteFile(*disk_, PathIn(folder, copy), [&](std::string& old) { return Replace(old, text); })) return false;
  names.push_back(copy);
  std::vector<std::pair<std::pair<std::string, int>, std::string>> kept;
  for (const std::string& n : names)
    if (auto order = BackupOrder(n, stem, stamp.size(), ext)) kept.push_back({*order, n});
  std::sort(kept.begin(), kept.end());
  for (std::size_t i = 0; i + keep < kept.size(); ++i) disk_->Remove(PathIn(folder, kept[i].second));
  return true;
}

int QuestStore::TryLock(std::string_view name, std::unique_ptr<StoreDisk::Lock>& lock) const {
  return disk_->TryLockFile(Resolve(name), lock);
}

}  // namespace fw
