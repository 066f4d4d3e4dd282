// Deleting a page: its section goes from the working file. The page list
// keeps the numbers 1 to N true for Load, so only the last entry leaves the
// list; one in the middle stays as an empty page.
#include <cctype>
#include <string>
#include <vector>

#include "editor/createquest.h"
#include "editor/editor_state.h"
#include "editor/page_fields.h"
#include "forms/program.h"
#include "store/program_store.h"

namespace fw {
namespace {

constexpr const char* kForm = "createquest";
constexpr const char* kDestinationKeys[] = {"Option One Destination Page", "Option Two Destination Page",
                                            "Option Three Destination Page", "Option Four Destination Page"};

// Section names match without regard to the case of letters, as reads find them.
bool SameSection(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i]))) return false;
  return true;
}

// "page 3, option 2; page 9, option 1": the options of the other pages of
// the list that lead to `page`.
std::string OptionsLeadingTo(Program& p, const EditorState& e, const std::string& page) {
  std::string text = ReadINIText(p, kWorkingFile).value_or("");
  std::vector<std::string> seen;
  std::string found;
  for (int i = 0; i < e.pg.ListCount(); ++i) {
    std::string from = e.pg.List(i);
    bool repeat = false;
    for (const std::string& s : seen) repeat = repeat || SameSection(s, from);
    if (repeat || SameSection(from, page)) continue;
    seen.push_back(from);
    for (int option = 0; option < 4; ++option) {
      if (!SameSection(FindProfileValue(text, from, kDestinationKeys[option]), page)) continue;
      if (!found.empty()) found += "; ";
      found += "page " + from + ", option " + std::to_string(option + 1);
    }
  }
  return found;
}

// The page's fields go blank with no page selected, so that clearing them
// writes nothing back.
void ClearPageFields(Program& p) {
  for (const Binding& b : kBindings) {
    if (b.story) continue;
    if (b.check) Skip([&] { CheckBox(p.surface(), kForm, b.control).SetValue(0); });
    else Skip([&] { TextBox(p.surface(), kForm, b.control).SetText(""); });
  }
}

}  // namespace

void createquest::Command2_Click(Program& p) {
  EditorState e(p);
  int index = e.pg.ListIndex();
  if (index < 0) return;
  std::string page = e.SelectedPage();
  std::string leading = OptionsLeadingTo(p, e, page);
  std::string question = leading.empty() ? "" : "Page " + page + " is the destination of: " + leading + ". ";
  question += "Delete page " + page + "?";
  if (p.MsgBox(question, 4, "WARNING!!!!") != 6) return;
  if (!DeleteINISection(p, kWorkingFile, page)) {
    p.MsgBox("Error!");
    return;
  }
  if (index == e.pg.ListCount() - 1) {
    e.pg.RemoveItem(index);
    WriteINI(p, kWorkingFile, kQuestData, kNumberOfPages, std::to_string(e.pg.ListCount()));
  } else {
    e.pg.SetSelected(index, false);
  }
  ClearPageFields(p);
}

}  // namespace fw
