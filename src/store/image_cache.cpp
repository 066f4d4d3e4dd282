#include "store/image_cache.h"

#include <algorithm>

#include <cstring>

namespace fw {
namespace {

// Whether the file holds exactly the text, compared block by block as it is
// read, so that a long quest is neither held twice nor copied.
bool HoldsText(StoreDisk& disk, const std::string& host, std::string_view text) {
  std::size_t at = 0;
  bool same = true;
  int error = disk.Scan(host, [&](std::string_view bytes, bool atEnd, std::size_t& letGo) {
    if (bytes.size() > text.size() - at || std::memcmp(bytes.data(), text.data() + at, bytes.size()) != 0) {
      same = false;
      return true;
    }
    at += bytes.size();
    letGo = bytes.size();
    if (atEnd) same = at == text.size();
    return atEnd;
  });
  return error == 0 && same;
}

}  // namespace

bool ImageCache::Settled(StoreDisk& disk, const std::string& host, const FileIdentity& id) {
  auto known = granularity_.find(id.device);
  if (known == granularity_.end()) known = granularity_.emplace(id.device, disk.TimestampGranularityNs(host)).first;
  // A stamp ahead of the clock (another machine's) is never settled.
  return disk.NowNs() - std::max(id.modifiedNs, id.changedNs) >= known->second;
}

std::shared_ptr<const ProfileIndex> ImageCache::Get(StoreDisk& disk, const std::string& host) {
  FileIdentity before;
  std::lock_guard hold(mutex_);
  if (disk.Identify(host, before) != 0) {
    entries_.erase(host);
    return nullptr;
  }
  auto it = entries_.find(host);
  if (it != entries_.end() && it->second.trusted && it->second.id == before) return it->second.image;
  // A file stamped within its tick of the last look: its bytes tell.
  FileIdentity after;
  if (it != entries_.end() && it->second.id == before && HoldsText(disk, host, it->second.image->text()) &&
      disk.Identify(host, after) == 0 && after == before) {
    it->second.trusted = Settled(disk, host, after);
    return it->second.image;
  }
  std::string bytes;
  if (disk.Read(host, bytes, nullptr) != 0 || disk.Identify(host, after) != 0 || after != before) {
    entries_.erase(host);
    return nullptr;
  }
  Entry& entry = entries_[host];
  if (!entry.image || entry.image->text() != bytes) entry.image = std::make_shared<const ProfileIndex>(std::move(bytes));
  entry.id = after;
  entry.trusted = Settled(disk, host, after);
  return entry.image;
}

void ImageCache::Wrote(StoreDisk& disk, const std::string& host, std::string text) {
  FileIdentity id;
  std::lock_guard hold(mutex_);
  if (disk.Identify(host, id) != 0) {
    entries_.erase(host);
    return;
  }
  // Another program may write in the same tick: the bytes are checked at the next read.
  entries_[host] = {id, false, std::make_shared<const ProfileIndex>(std::move(text))};
}

void ImageCache::Forget(const std::string& host) {
  std::lock_guard hold(mutex_);
  entries_.erase(host);
}

std::size_t ImageCache::MemoryBytes() const {
  std::lock_guard hold(mutex_);
  std::size_t bytes = 0;
  for (const auto& [_, entry] : entries_) bytes += entry.image->MemoryBytes();
  return bytes;
}

}  // namespace fw
