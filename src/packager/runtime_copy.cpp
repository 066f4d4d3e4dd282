#include "packager/runtime_copy.h"

#include <set>
#include <vector>

#include "forms/program.h"

namespace fw {
namespace {

// Makes each folder on the way to the file, once per run of the copy.
void MakeFoldersOf(Program& p, const std::string& folder, const std::string& relative, std::set<std::string>& made) {
  for (std::size_t cut = relative.find('/'); cut != std::string::npos; cut = relative.find('/', cut + 1)) {
    std::string sub = relative.substr(0, cut);
    if (made.insert(sub).second) Skip([&] { p.MkDir(folder + sub); });
  }
}

}  // namespace

void CopyRuntime(Program& p, const std::string& folder, const std::string& exeCopy) {
  Runtime* runtime = p.services().runtime;
  if (!runtime) return;
  std::vector<RuntimeFile> files;
  Skip([&] { files = runtime->Files(); });
  std::set<std::string> made;
  for (const RuntimeFile& file : files) {
    MakeFoldersOf(p, folder, file.to, made);
    Skip([&] { p.services().files->Copy(file.from, p.HostFile(folder + file.to)); });
  }
  Skip([&] { runtime->Adopt(p.HostFile(folder), p.HostFile(exeCopy)); });
}

}  // namespace fw
