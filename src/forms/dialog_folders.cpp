#include "forms/dialog_folders.h"

#include <filesystem>

#include "forms/paths.h"
#include "forms/program.h"

namespace fw {
namespace {

// The folder of the last quest file picked in a dialog, for the run.
struct DialogMemory {
  std::string questFolder;  // host path, "" before the first
};

// Saved games and character files are the player's own.
bool HoldsPlayersFiles(const FileDialogRequest& r) {
  return r.defaultExt == "*.sav" || r.defaultExt == "*.cha" || r.defaultExt == "*.txt";
}

bool UnderSystemFolder(const std::string& folder) {
  std::string path = std::filesystem::path(folder).lexically_normal().string();
  for (std::string_view system : {"/usr", "/bin", "/sbin", "/opt", "/snap"})
    if (path.starts_with(system) && (path.size() == system.size() || path[system.size()] == '/')) return true;
  return false;
}

}  // namespace

bool UsersToWrite(Program& p, const std::string& folder) {
  return !UnderSystemFolder(folder) && p.services().files->Writable(folder);
}

std::string SavesFolder(Program& p) {
  std::string saves = p.UserDir() + "/saves";
  FileSystem& files = *p.services().files;
  if (!files.IsDirectory(saves)) Skip([&] { files.MakeDir(saves); });
  return files.IsDirectory(saves) ? saves : p.UserDir();
}

std::string DialogFolder(Program& p, const FileDialogRequest& r) {
  bool players = HoldsPlayersFiles(r);
  // A character dialog is given no InitDir: it goes where saved games go.
  bool toAppPath = r.initDir == p.AppPath() || (players && r.initDir.empty());
  if (!toAppPath) return r.initDir.empty() ? "" : p.HostFile(r.initDir);
  std::string app = p.HostFile(p.AppPath());
  if (UsersToWrite(p, app)) return app;
  if (players) return SavesFolder(p);
  const std::string& last = p.Module<DialogMemory>().questFolder;
  if (!last.empty() && p.services().files->IsDirectory(last)) return last;
  return HomeDir();
}

void RememberQuestFolder(Program& p, std::string_view path) {
  std::string folder = std::filesystem::path(p.HostFile(path)).parent_path().string();
  if (!folder.empty()) p.Module<DialogMemory>().questFolder = folder;
}

}  // namespace fw
