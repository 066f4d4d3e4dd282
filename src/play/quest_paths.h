#pragma once
#include <string>
#include <string_view>

#include "shell/surface.h"

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

// The folder of the quest file questfil names, as a program path. A bare name
// is a profile in the per-user folder, where the profile layer keeps it.
std::string QuestFolder(const Program& p, std::string_view questfil);

// LoadPicture on the file FindQuestFile gives. The picture keeps the name as
// the quest wrote it. Fails as LoadPicture does.
Picture LoadQuestPicture(Program& p, std::string_view name, std::string_view folder);

}  // namespace fw
