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
// keep it; on Yes the editor opens on it and this gives true. So it does on
// No when no copy of the work can be kept.
bool OfferRecovery(Program& p);

// A copy of the working file among the backups, when it holds work, before
// it is thrown away. False, after a box that says so, when the copy could
// not be made: the working file must then stay as it is.
bool KeepWorkingFile(Program& p);

// Before a save replaces the quest: keeps the quest as it was among the
// backups. When that copy can't be made, asks whether to replace the quest
// all the same; false on No.
bool KeepQuestBeforeSave(Program& p, const std::string& working, const std::string& quest);

// Load from the backup of the working file on: the quest becomes the
// working file, the fields and the page list follow it. False after a box:
// "Error!", or the backup that could not be made.
bool LoadQuestFile(Program& p, const std::string& quest);

// When the working file counts its pages below zero, the page list is empty
// and a typed field goes to no page: says so.
void TellOfNoPages(Program& p);

}  // namespace editor
}  // namespace fw
