// The explorer's report on the working file: what a player can reach, where
// the story ends or sticks and how its fights go.
#include "editor/author_menu.h"
#include "editor/explore_working_file.h"
#include "forms/codepage.h"
#include "forms/controls.h"
#include "forms/program.h"

namespace fw {
namespace {

constexpr const char* kForm = "FrmExplore";

// The report lines up its figures in columns.
constexpr Font kReportFont{"Courier New", 9, false};

constexpr ControlDecl kControls[] = {
    {.name = "lblExplore", .kind = Kind::Label, .left = 120, .top = 120, .width = 8760, .height = 300,
     .caption = "The working file played through every choice, and each fight fought many times:"},
    {.name = "txtReport", .kind = Kind::TextBox, .left = 120, .top = 480, .width = 8760, .height = 5520,
     .look = {.font = kReportFont, .multiLine = true, .scrollBar = true, .readOnly = true}},
    {.name = "cmdExploreAgain", .kind = Kind::CommandButton, .left = 120, .top = 6120, .width = 1575, .height = 375,
     .caption = "Explore Again", .toolTip = "Play the pages as they are now"},
};

// Bounds that keep the window's wait short on a large quest; the command
// line's explorer goes further.
constexpr std::size_t kEditorStates = 20000;
constexpr int kEditorFights = 100;

void cmdExploreAgain_Click(Program& p) { WriteExploreReport(p); }

constexpr HandlerDecl kHandlers[] = {
    {"cmdExploreAgain", Event::Click, cmdExploreAgain_Click},
};

constexpr FormDecl kTable{
    .name = kForm, .caption = "Quest Explorer", .width = 9000, .height = 6600, .controls = kControls, .fixedBorder = true,
    .owner = "createquest"};

// The report's lines as a text box holds them.
std::string BoxText(const std::string& utf8) {
  std::string out;
  for (char c : Cp1252FromUtf8(utf8)) {
    if (c == '\n') out += '\r';
    out += c;
  }
  return out;
}

}  // namespace

const FormDef& FrmExploreForm() {
  static const FormDef form{&kTable, kHandlers};
  return form;
}

void WriteExploreReport(Program& p) {
  TextBox report(p.surface(), kForm, "txtReport");
  ExploreOptions options;
  options.maxStates = kEditorStates;
  options.fights = kEditorFights;
  std::optional<ExploreReport> explored = ExploreWorkingFile(p, options);
  report.SetText(explored ? BoxText(ExploreReportText(*explored)) : "The working file cannot be read.");
  report.SetSelStart(0);
}

}  // namespace fw
