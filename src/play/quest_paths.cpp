#include "play/quest_paths.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <map>
#include <system_error>
#include <vector>

#include "forms/codepage.h"
#include "forms/paths.h"
#include "forms/program.h"

namespace fw {
namespace {

namespace fs = std::filesystem;

// The lower-case form of a Windows-1252 letter, as Windows folds file names.
unsigned char FoldCp1252(unsigned char c) {
  if (c >= 'A' && c <= 'Z') return c + 32;
  if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + 32;
  if (c == 0x8A || c == 0x8C || c == 0x8E) return c + 16;  // Š Œ Ž
  if (c == 0x9F) return 0xFF;                              // Ÿ
  return c;
}

bool SameIgnoringCase(std::string_view utf8a, std::string_view utf8b) {
  std::string a = Cp1252FromUtf8(utf8a), b = Cp1252FromUtf8(utf8b);
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (FoldCp1252(a[i]) != FoldCp1252(b[i])) return false;
  return true;
}

bool IsFile(const fs::path& path) {
  std::error_code ec;
  return fs::is_regular_file(path, ec);
}

// The entries of `dir` that `name` may mean. The exact one, when it exists, is
// taken as the one meant, and the folder is not read; otherwise those named
// so but for letter case, from the lookup's listings.
std::vector<fs::path> Candidates(const fs::path& dir, const fs::path& name, FolderListings& listings) {
  std::error_code ec;
  if (fs::exists(dir / name, ec)) return {dir / name};
  std::vector<fs::path> found;
  for (const std::string& entry : listings.Of(dir))
    if (SameIgnoringCase(entry, name.string())) found.push_back(dir / entry);
  return found;
}

// The existing file below `dir` that the remaining parts name but for letter
// case. Folders that differ only in case may both exist here, so each is tried.
fs::path MatchParts(const fs::path& dir, fs::path::iterator part, fs::path::iterator end, FolderListings& listings) {
  if (part == end) return IsFile(dir) ? dir : fs::path();
  if (*part == "." || *part == "..") return MatchParts(dir / *part, std::next(part), end, listings);
  for (const fs::path& entry : Candidates(dir, *part, listings))
    if (fs::path file = MatchParts(entry, std::next(part), end, listings); !file.empty()) return file;
  return {};
}

// The program path of an existing file that `name` means here, "" if none.
std::string Locate(const Program& p, std::string_view name, FolderListings& listings) {
  std::string host = p.HostFile(name);
  if (IsFile(host)) return std::string(name);
  std::string match = MatchIgnoringCase(host, listings);
  return match.empty() ? std::string() : Cp1252FromUtf8(match);
}

bool HasDriveLetter(std::string_view name) {
  return name.size() >= 2 && name[1] == ':' &&
         ((name[0] >= 'A' && name[0] <= 'Z') || (name[0] >= 'a' && name[0] <= 'z'));
}

// True when a relative name names something below where it starts, its
// parts never climbing above it.
bool StaysBelow(std::string_view name) {
  int depth = 0;
  for (std::size_t at = 0; at <= name.size();) {
    std::size_t end = std::min(name.find_first_of("\\/", at), name.size());
    std::string_view part = name.substr(at, end - at);
    if (part == "..") {
      if (--depth < 0) return false;
    } else if (!part.empty() && part != ".") {
      ++depth;
    }
    at = end + 1;
  }
  return depth > 0;
}

// True when the host file, links followed, lies inside the host folder.
bool RealPathInside(const std::string& hostFolder, const std::string& hostFile) {
  std::error_code ec;
  fs::path folder = fs::weakly_canonical(hostFolder, ec);
  if (ec) return false;
  fs::path file = fs::weakly_canonical(hostFile, ec);
  if (ec) return false;
  auto [inFolder, inFile] = std::mismatch(folder.begin(), folder.end(), file.begin(), file.end());
  return inFolder == folder.end();
}

}  // namespace

std::vector<std::string> ReadFolder(const std::filesystem::path& dir) {
  std::vector<std::string> names;
  std::error_code ec;
  for (fs::directory_iterator it(dir, ec), end; !ec && it != end; it.increment(ec))
    names.push_back(it->path().filename().string());
  // Case twins are tried in one order on every machine.
  std::sort(names.begin(), names.end());
  return names;
}

const std::vector<std::string>& FolderListings::Of(const std::filesystem::path& dir) {
  auto it = listed_.find(dir);
  if (it == listed_.end()) it = listed_.emplace(dir, read_(dir)).first;
  return it->second;
}

std::string MatchIgnoringCase(const std::string& host, FolderListings& listings) {
  fs::path wanted(host);
  fs::path relative = wanted.relative_path();
  return MatchParts(wanted.root_path(), relative.begin(), relative.end(), listings).string();
}

std::string FindQuestFile(const Program& p, std::string_view name, std::string_view folder) {
  if (name.empty()) return {};
  FolderListings listings(ReadFolder);
  if (std::string found = Locate(p, name, listings); !found.empty()) return found;
  // A drive of the author's machine means nothing here, and a bare name was
  // meant for the game's folder, which need not be the current one here.
  if (HasDriveLetter(name) || !HasDirectoryPart(name)) {
    std::string_view bare = name.substr(name.find_last_of("\\/:") + 1);
    std::string local = std::string(folder) + "\\" + std::string(bare);
    if (std::string found = Locate(p, local, listings); !found.empty()) return found;
  }
  return std::string(name);
}

std::string QuestFolder(const Program& p, std::string_view questfil) {
  if (!HasDirectoryPart(questfil)) {
    std::string dir = p.GetWindowsDir();
    dir.pop_back();  // its trailing backslash
    return dir;
  }
  std::size_t cut = questfil.find_last_of("\\/");
  if (cut == std::string_view::npos) return std::string(questfil.substr(0, 2));  // "C:name"
  return std::string(questfil.substr(0, cut));
}

std::string InsideFolder(const Program& p, std::string_view folder, std::string_view name) {
  bool rooted = !name.empty() && (name[0] == '\\' || name[0] == '/');
  if (name.empty() || rooted || HasDriveLetter(name) || !StaysBelow(name)) return {};
  std::string path = std::string(folder) + "\\" + std::string(name);
  return RealPathInside(p.HostFile(folder), p.HostFile(path)) ? path : std::string();
}

Picture LoadQuestPicture(Program& p, std::string_view name, std::string_view folder) {
  Picture picture = p.LoadPicture(FindQuestFile(p, name, folder));
  picture.path = std::string(name);
  return picture;
}

}  // namespace fw
