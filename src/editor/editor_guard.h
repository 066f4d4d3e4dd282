#pragma once
#include <string>

namespace fw {

class Program;

// What keeps an author's work from being lost beyond the editor's own
// questions: one editor a machine, the offer of work left by an earlier
// run, and a backup of each quest a save replaces.
namespace editor {

// Takes the editor's lock for the run. When another editor of the machine
// holds it, says so, leaves the working file alone and has the window go
// again; gives false.
bool TakeOrRefuseLock(Program& p);

// When the working file holds work left by an earlier run, asks whether to
// keep it; on Yes the editor opens on it and this gives true.
bool OfferRecovery(Program& p);

// A copy of the working file among the backups, when it holds work, before
// it is thrown away.
void KeepWorkingFile(Program& p);

// Copies the working file over the quest in one step, keeping the quest it
// replaces among the backups first. False when the quest was not written.
bool SaveQuestFile(Program& p, const std::string& working, const std::string& quest);

// Load from its copy on: the quest becomes the working file, the fields and
// the page list follow it. False after the "Error!" box.
bool LoadQuestFile(Program& p, const std::string& quest);

}  // namespace editor
}  // namespace fw
