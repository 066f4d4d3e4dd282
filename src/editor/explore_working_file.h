#pragma once
#include <optional>

#include "editor/quest_explore.h"

namespace fw {

class Program;

// Explores the editor's working file as it stands, in a program of its own
// with the same forms, headless and on a clock that moves only as it plays:
// the author's game, the editor and the working file are left as they are.
// The explorer plays a copy, since a fight won may write to the quest;
// nullopt when the copy cannot be made.
std::optional<ExploreReport> ExploreWorkingFile(Program& p, const ExploreOptions& options);

}  // namespace fw
