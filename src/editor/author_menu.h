#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "editor/quest_map.h"
#include "forms/form_table.h"

namespace fw {

class Program;

// The editor's Author Tools menu: the map, the checker's findings and the
// explorer's report of the working file, each in a window of its own.

const FormDef& FrmQuestMapForm();
const FormDef& FrmFindingsForm();
const FormDef& FrmExploreForm();

// What the author tools keep for the run: the map on screen and the pages
// the findings' entries name.
struct AuthorToolsModule {
  MapPicture map;
  std::vector<std::string> mapPages;  // section names, by the map's page index
  double zoom = 1;                    // the map's, 1 for its own size
  std::vector<std::string> findingPages;  // by entry of the findings' list
};

// Selects the page in the editor's page list, which shows it in the fields
// as a click on its entry does. False when no entry names it.
bool SelectEditorPage(Program& p, std::string_view page);

// Draws the working file's map afresh into the map window.
void DrawQuestMap(Program& p);
// Checks the working file afresh into the findings' list.
void ListFindings(Program& p);
// Explores the working file afresh into the report window.
void WriteExploreReport(Program& p);

namespace createquest {

void mnuquestmap_Click(Program& p);
void mnucheckquest_Click(Program& p);
void mnuexplorequest_Click(Program& p);
// Test Game from the page selected in the page list instead of page 1.
void mnutestfrompage_Click(Program& p);
// Turns undo off for the quest's players, or on again, and says which.
void mnuundoswitch_Click(Program& p);

}  // namespace createquest
}  // namespace fw
