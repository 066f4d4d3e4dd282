#include "store/program_store.h"

#include <optional>

#include "forms/codepage.h"
#include "forms/paths.h"
#include "forms/program.h"

namespace fw {
namespace {

// The store of one program, made at its first use on the program's per-user folder.
struct ProgramStore {
  std::optional<QuestStore> store;
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

}  // namespace

std::string ReadINI(Program& p, std::string_view path, std::string_view section, std::string_view key) {
  return StoreOf(p).ReadINI(StorePath(p, path), section, key);
}

void WriteINI(Program& p, std::string_view path, std::string_view section, std::string_view key,
              std::string_view value) {
  StoreOf(p).WriteINI(StorePath(p, path), section, key, value);
}

std::shared_ptr<const ProfileImage> ReadINIImage(Program& p, std::string_view path) {
  return StoreOf(p).ReadImage(StorePath(p, path));
}

bool WriteINIKeys(Program& p, std::string_view path, std::span<const QuestStore::Entry> entries) {
  return StoreOf(p).WriteINIKeys(StorePath(p, path), entries);
}

}  // namespace fw
