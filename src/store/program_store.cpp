#include "store/program_store.h"

#include <optional>

#include "forms/codepage.h"
#include "forms/paths.h"
#include "forms/program.h"
#include "store/safe_write.h"

namespace fw {
namespace {

// The store of one program, made at its first use on the program's per-user folder.
struct ProgramStore {
  std::optional<QuestStore> store;
  // A file served from memory while a tool plays it: its store path and image.
  std::string servedPath;
  std::shared_ptr<const ProfileImage> served;
  WriteWatch watch;
};

const QuestStore& StoreOf(Program& p) {
  ProgramStore& module = p.Module<ProgramStore>();
  if (!module.store) module.store.emplace(p.UserDir());
  return *module.store;
}

// True for a path that starts at a root or a drive.
bool IsAbsolute(std::string_view path) {
  return (!path.empty() && (path[0] == '/' || path[0] == '\\')) || (path.size() >= 2 && path[1] == ':');
}

// A profile path as the store takes it.
std::string StorePath(const Program& p, std::string_view path) {
  if (HasDirectoryPart(path) && !IsAbsolute(path)) return Cp1252FromUtf8(p.CurrentDir()) + "/" + std::string(path);
  return std::string(path);
}

// The image that serves reads of this store path, or null.
const ProfileImage* ServedImage(Program& p, const std::string& storePath) {
  ProgramStore& module = p.Module<ProgramStore>();
  return module.served && module.servedPath == storePath ? module.served.get() : nullptr;
}

// A write reaches the disk as always; the image is then read afresh from it.
void AfterWrite(Program& p, const std::string& storePath) {
  ProgramStore& module = p.Module<ProgramStore>();
  if (module.served && module.servedPath == storePath) module.served = StoreOf(p).ReadImage(storePath);
}

void BeforeWrite(Program& p, std::string_view path) {
  // A copy: the watcher may replace itself.
  if (WriteWatch watch = p.Module<ProgramStore>().watch) watch(p, path);
}

// Names and keys pass to the file's reader as C strings.
std::string_view UpToNul(std::string_view s) { return s.substr(0, s.find('\0')); }

}  // namespace

std::string ReadINI(Program& p, std::string_view path, std::string_view section, std::string_view key) {
  std::string store = StorePath(p, path);
  if (const ProfileImage* image = ServedImage(p, store)) return std::string(image->Value(UpToNul(section), UpToNul(key)));
  return StoreOf(p).ReadINI(store, section, key);
}

void WriteINI(Program& p, std::string_view path, std::string_view section, std::string_view key,
              std::string_view value) {
  BeforeWrite(p, path);
  std::string store = StorePath(p, path);
  StoreOf(p).WriteINI(store, section, key, value);
  AfterWrite(p, store);
}

bool ServeFromImage(Program& p, std::string_view path) {
  ProgramStore& module = p.Module<ProgramStore>();
  std::string store = StorePath(p, path);
  module.served = StoreOf(p).ReadImage(store);
  module.servedPath = module.served ? store : std::string();
  return module.served != nullptr;
}

void StopServingFromImage(Program& p) {
  ProgramStore& module = p.Module<ProgramStore>();
  module.served.reset();
  module.servedPath.clear();
}

std::shared_ptr<const ProfileImage> ReadINIImage(Program& p, std::string_view path) {
  return StoreOf(p).ReadImage(StorePath(p, path));
}

std::shared_ptr<const ProfileIndex> ReadINIIndex(Program& p, std::string_view path) {
  return StoreOf(p).ReadIndex(StorePath(p, path));
}

bool WriteINIKeys(Program& p, std::string_view path, std::span<const QuestStore::Entry> entries) {
  BeforeWrite(p, path);
  std::string store = StorePath(p, path);
  bool written = StoreOf(p).WriteINIKeys(store, entries);
  AfterWrite(p, store);
  return written;
}

std::optional<std::string> ReadINIText(Program& p, std::string_view path) {
  return StoreOf(p).ReadText(StorePath(p, path));
}

bool WriteINIText(Program& p, std::string_view path, std::string_view text) {
  BeforeWrite(p, path);
  std::string store = StorePath(p, path);
  bool written = StoreOf(p).WriteText(store, text);
  AfterWrite(p, store);
  return written;
}

void WatchINIWrites(Program& p, WriteWatch watch) { p.Module<ProgramStore>().watch = std::move(watch); }

std::string INIHostPath(Program& p, std::string_view path) { return StoreOf(p).Resolve(StorePath(p, path)); }

bool SameINIFile(Program& p, std::string_view a, std::string_view b) { return INIHostPath(p, a) == INIHostPath(p, b); }

bool DeleteINISection(Program& p, std::string_view path, std::string_view section) {
  BeforeWrite(p, path);
  std::string store = StorePath(p, path);
  bool deleted = StoreOf(p).DeleteSection(store, section);
  AfterWrite(p, store);
  return deleted;
}

bool CopyProfileFile(Program& p, std::string_view from, std::string_view to) {
  BeforeWrite(p, to);
  std::string store = StorePath(p, to);
  bool copied = StoreOf(p).CopyFile(StorePath(p, from), store);
  AfterWrite(p, store);
  return copied;
}

std::string BackupsFolder(Program& p) { return p.UserDir() + "/" + kBackupsFolder; }

bool KeepBackup(Program& p, std::string_view path, std::string_view stamp) {
  return StoreOf(p).KeepBackup(StorePath(p, path), BackupsFolder(p), stamp, kBackupsKept);
}

bool WriteUserFile(Program& p, std::string_view name, std::string_view bytes) {
  return WriteWholeFile(p.UserDir() + "/" + std::string(name), bytes);
}

bool WriteWholeFile(const std::string& hostPath, std::string_view bytes) {
  RealStoreDisk disk;
  return RewriteFile(disk, hostPath, [&](std::string& text) {
    if (text == bytes) return false;
    text = bytes;
    return true;
  });
}

int TryLockUserFile(Program& p, std::string_view name, std::unique_ptr<StoreDisk::Lock>& lock) {
  return StoreOf(p).TryLock(name, lock);
}

}  // namespace fw
