#pragma once
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>
#include <string_view>

#include "forms/surface.h"

namespace fw {

class Program;

// Quests and game.dat are written on Windows: their file names come with
// backslashes, drive letters and whatever letter case the author typed. These
// find the file such a name means on this machine.

// The program path to open for `name`: the name itself when that file exists;
// else a file whose path differs from it only in letter case; else, for a
// drive-letter path or a bare name, its bare file name in `folder` (same
// rules). When nothing
// is found the name comes back unchanged, so the caller fails as it would
// have. `folder` is a program path, such as the quest's own folder.
std::string FindQuestFile(const Program& p, std::string_view name, std::string_view folder);

// The names in a folder, sorted; none when it cannot be read.
std::vector<std::string> ReadFolder(const std::filesystem::path& dir);

// The folders one lookup has read: a page that names a missing file costs one
// listing of each folder where a part's exact name is missing, never more.
class FolderListings {
 public:
  using Reader = std::function<std::vector<std::string>(const std::filesystem::path&)>;
  explicit FolderListings(Reader read) : read_(std::move(read)) {}
  const std::vector<std::string>& Of(const std::filesystem::path& dir);

 private:
  Reader read_;
  std::map<std::filesystem::path, std::vector<std::string>> listed_;
};

// The existing host file that `host` names but for letter case, folder by
// folder; "" when there is none.
std::string MatchIgnoringCase(const std::string& host, FolderListings& listings);

// The folder of the quest file questfil names, as a program path. A bare name
// is a profile in the per-user folder, where the profile layer keeps it.
std::string QuestFolder(const Program& p, std::string_view questfil);

// The program path of `name` inside `folder` (a program path), as a game.dat
// names its files: "" when the name is blank or leads out of the folder (a
// path from a root or a drive, a ".." that climbs above it, or a link to a
// file elsewhere), so that a game folder from elsewhere reaches no file
// outside it.
std::string InsideFolder(const Program& p, std::string_view folder, std::string_view name);

// LoadPicture on the file FindQuestFile gives. The picture keeps the name as
// the quest wrote it. Fails as LoadPicture does.
Picture LoadQuestPicture(Program& p, std::string_view name, std::string_view folder);

}  // namespace fw
