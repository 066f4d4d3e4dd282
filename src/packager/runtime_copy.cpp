#include "packager/runtime_copy.h"

#include <filesystem>
#include <map>
#include <set>
#include <vector>

#include "forms/program.h"
#include "packager/project_licence.h"
#include "store/program_store.h"

namespace fw {
namespace {

constexpr const char* kLicenses = "licenses/";

// Makes each folder on the way to the file, once per run of the copy.
void MakeFoldersOf(Program& p, const std::string& folder, const std::string& relative, std::set<std::string>& made) {
  for (std::size_t cut = relative.find('/'); cut != std::string::npos; cut = relative.find('/', cut + 1)) {
    std::string sub = relative.substr(0, cut);
    if (made.insert(sub).second) Skip([&] { p.MkDir(folder + sub); });
  }
}

// The name each copyright file goes by in licenses/: its source package's,
// unless packages of that source carry different texts, when each is named
// by its own package.
std::map<std::string, std::string> LicenceNames(const std::vector<RuntimeOrigin>& copied) {
  std::map<std::string, std::set<std::string>> textsOfSource;
  for (const RuntimeOrigin& o : copied)
    if (!o.copyright.empty()) textsOfSource[o.source].insert(o.copyright);
  std::map<std::string, std::string> names;
  for (const RuntimeOrigin& o : copied) {
    if (o.copyright.empty()) continue;
    bool shared = textsOfSource[o.source].size() == 1;
    // /usr/share/doc/PACKAGE/copyright
    std::string owner = shared ? o.source : std::filesystem::path(o.copyright).parent_path().filename().string();
    names.emplace(o.copyright, owner + ".copyright");
  }
  return names;
}

}  // namespace

std::string LicensesReadme(const std::vector<RuntimeOrigin>& copied) {
  std::string text =
      "The licences of this game's files\n"
      "\n"
      "The game is played by a copy of Fablewright, under the MIT licence in LICENSE.\n";
  if (copied.empty()) return text;
  text +=
      "\n"
      "The libraries, plugins and soundfont beside it are copies of Debian's packages,\n"
      "unchanged. Each comes under the licence in the copyright file named for it\n"
      "below, and its source can be had from Debian as the source package and version\n"
      "named (on Debian: apt-get source SOURCE=VERSION).\n"
      "\n";
  std::map<std::string, std::string> names = LicenceNames(copied);
  for (const RuntimeOrigin& o : copied) {
    if (o.package.empty()) {
      text += o.to + ": in no Debian package where the game was made\n";
      continue;
    }
    text += o.to + ": " + o.package + ", source " + o.source + " " + o.version;
    text += o.copyright.empty() ? ", no copyright file\n" : ", licence in " + names[o.copyright] + "\n";
  }
  return text;
}

void CopyLicenses(Program& p, const std::string& folder, const std::vector<RuntimeOrigin>& copied) {
  Skip([&] { p.MkDir(folder + "licenses"); });
  std::string host = p.HostFile(folder + kLicenses);
  WriteWholeFile(host + "LICENSE", ProjectLicence());
  if (copied.empty()) return;
  for (const auto& licence : LicenceNames(copied))
    Skip([&] { p.services().files->Copy(licence.first, host + licence.second); });
  WriteWholeFile(host + "README.txt", LicensesReadme(copied));
}

void CopyRuntime(Program& p, const std::string& folder, const std::string& exeCopy) {
  Runtime* runtime = p.services().runtime;
  if (!runtime) return CopyLicenses(p, folder, {});
  std::vector<RuntimeFile> files;
  Skip([&] { files = runtime->Files(); });
  std::set<std::string> made, copied;
  for (const RuntimeFile& file : files) {
    MakeFoldersOf(p, folder, file.to, made);
    Skip([&] {
      p.services().files->Copy(file.from, p.HostFile(folder + file.to));
      copied.insert(file.to);
    });
  }
  Skip([&] { runtime->Adopt(p.HostFile(folder), p.HostFile(exeCopy)); });
  std::vector<RuntimeOrigin> origins;
  Skip([&] {
    for (const RuntimeOrigin& o : runtime->Origins())
      if (copied.count(o.to)) origins.push_back(o);
  });
  CopyLicenses(p, folder, origins);
}

}  // namespace fw
