// The checker's findings on the working file, one entry each; a click on an
// entry selects its page in the editor.
#include "editor/author_menu.h"
#include "editor/editor_state.h"
#include "editor/quest_check.h"
#include "forms/controls.h"
#include "forms/program.h"

namespace fw {
namespace {

constexpr const char* kForm = "FrmFindings";

constexpr ControlDecl kControls[] = {
    {.name = "lblFindings", .kind = Kind::Label, .left = 120, .top = 120, .width = 8760, .height = 300},
    {.name = "lstFindings", .kind = Kind::ListBox, .left = 120, .top = 480, .width = 8760, .height = 3720,
     .toolTip = "Click a finding to select its page in the editor"},
    {.name = "cmdCheckAgain", .kind = Kind::CommandButton, .left = 120, .top = 4320, .width = 1455, .height = 375,
     .caption = "Check Again", .toolTip = "Check the pages as they are now"},
    {.name = "lblFindingStatus", .kind = Kind::Label, .left = 1680, .top = 4380, .width = 7200, .height = 300},
};

ListBox Findings(Program& p) { return ListBox(p.surface(), kForm, "lstFindings"); }
Label Status(Program& p) { return Label(p.surface(), kForm, "lblFindingStatus"); }

// "2 errors, 1 warning".
std::string Counted(std::size_t n, const char* what) {
  return std::to_string(n) + " " + what + (n == 1 ? "" : "s");
}

void lstFindings_Click(Program& p) {
  const std::vector<std::string>& pages = p.Module<AuthorToolsModule>().findingPages;
  int i = Findings(p).ListIndex();
  if (i < 0 || i >= static_cast<int>(pages.size())) return;
  const std::string& page = pages[i];
  Status(p).SetCaption(SelectEditorPage(p, page) ? "Page " + page + " is selected in the editor."
                                                 : "Page " + page + " has no entry in the editor's page list.");
}

void cmdCheckAgain_Click(Program& p) { ListFindings(p); }

constexpr HandlerDecl kHandlers[] = {
    {"lstFindings", Event::Click, lstFindings_Click},
    {"cmdCheckAgain", Event::Click, cmdCheckAgain_Click},
};

constexpr FormDecl kTable{
    .name = kForm, .caption = "Quest Check", .width = 9000, .height = 4800, .controls = kControls, .fixedBorder = true,
    .owner = "createquest"};

}  // namespace

const FormDef& FrmFindingsForm() {
  static const FormDef form{&kTable, kHandlers};
  return form;
}

void ListFindings(Program& p) {
  AuthorToolsModule& m = p.Module<AuthorToolsModule>();
  ListBox list = Findings(p);
  list.Clear();
  m.findingPages.clear();
  Status(p).SetCaption("");
  Label summary(p.surface(), kForm, "lblFindings");
  std::optional<std::vector<Finding>> findings = CheckQuest(p, kWorkingFile);
  if (!findings) return summary.SetCaption("The working file cannot be read.");
  std::size_t errors = 0;
  for (const Finding& f : *findings) {
    bool error = f.level == Finding::Level::Error;
    errors += error;
    list.AddItem(f.page + ": " + (error ? "error" : "warning") + ": " + f.message);
    m.findingPages.push_back(f.page);
  }
  if (findings->empty()) return summary.SetCaption("No findings: the quest plays as it is written.");
  summary.SetCaption(Counted(errors, "error") + ", " + Counted(findings->size() - errors, "warning") +
                     ". Click one to select its page.");
}

}  // namespace fw
