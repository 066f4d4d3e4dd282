// The page editor: every field bound to one key of the working file, written
// at each change, and the page list that picks the page the keys belong to.
#include <algorithm>
#include <array>
#include <string>

#include "editor/createquest.h"
#include "editor/editor_state.h"
#include "editor/frmbattle.h"
#include "editor/page_fields.h"
#include "forms/convert.h"
#include "forms/program.h"
#include "store/program_store.h"

namespace fw {
namespace {

constexpr const char* kForm = "createquest";

// The section a field's key lies in.
std::string SectionOf(Program& p, const Binding& b) {
  if (b.story) return kStorySection;
  return SelectedPage(p);
}

// The page keys as pg_Click reads them: the text boxes first, in this order.
constexpr std::array kTextOrder = {"Text1",  "Text2",  "Text3",  "Text4",  "Text5",  "Text6",  "Text7",
                                   "Text8",  "Text9",  "Text17", "Text16", "Text15", "Text14", "Text18",
                                   "Text19", "Text20", "Text21", "Text22", "Text23", "Text24"};
constexpr std::array kStoryOrder = {"Text10", "Text11", "Text12"};
constexpr std::array kLateOrder = {"Text25", "Text26"};

// Keeps the working file's text for the length of one page read.
class PageRead {
 public:
  explicit PageRead(Program& p) : m_(p.Module<EditorModule>()), before_(std::move(m_.pageRead)) {
    m_.pageRead = ReadINIIndex(p, kWorkingFile);
    if (!m_.pageRead) m_.pageRead = std::make_shared<const ProfileIndex>(std::string());
  }
  ~PageRead() { m_.pageRead = std::move(before_); }
  std::string operator()(std::string_view section, std::string_view key) const {
    return std::string(m_.pageRead->Value(section, key));
  }

 private:
  EditorModule& m_;
  std::shared_ptr<const ProfileIndex> before_;
};

void ReadTextBox(Program& p, const PageRead& read, const char* name, std::string_view section) {
  const Binding& b = BindingOf(name);
  TextBox box(p.surface(), kForm, name);
  Skip([&] { box.SetText(read(b.story ? kStorySection : section, b.key)); });
}

}  // namespace

void WriteField(Program& p, const char* control) {
  const Binding& b = BindingOf(control);
  const Control& c = p.surface().At(p.surface().Id(kForm, control));
  WriteBound(p, SectionOf(p, b), b.key, b.check ? std::to_string(c.checkValue) : c.caption);
}

void WriteBound(Program& p, std::string_view section, std::string_view key, std::string_view value) {
  // An empty value may be a key that is missing yet, and is always written.
  const auto& pageRead = p.Module<EditorModule>().pageRead;
  if (pageRead && !value.empty() && pageRead->Value(section, key) == value) return;
  WriteINI(p, kWorkingFile, section, key, value);
}

std::string ReadBound(Program& p, std::string_view section, std::string_view key) {
  const auto& pageRead = p.Module<EditorModule>().pageRead;
  if (pageRead) return std::string(pageRead->Value(section, key));
  return ReadINI(p, kWorkingFile, section, key);
}

std::string SelectedPage(Program& p) {
  ListBox pg(p.surface(), kForm, "pg");
  return pg.List(pg.ListIndex());
}

void createquest::pg_Click(Program& p) {
  EditorState e(p);
  const std::string page = e.SelectedPage();
  PageRead read(p);
  for (const char* name : kTextOrder) ReadTextBox(p, read, name, page);
  // A value a box refuses, or no number, leaves the box as the page before
  // left it; an empty one clears it in the second pass.
  for (const char* name : kCheckOrder) {
    CheckBox box(p.surface(), kForm, name);
    Skip([&] { box.SetValue(ToInt16(read(page, BindingOf(name).key))); });
  }
  for (const char* name : kCheckOrder) {
    CheckBox box(p.surface(), kForm, name);
    if (read(page, BindingOf(name).key).empty()) Skip([&] { box.SetValue(0); });
  }
  for (const char* name : kStoryOrder) ReadTextBox(p, read, name, page);
  for (const char* name : kLateOrder) ReadTextBox(p, read, name, page);
  frmbattle::FollowPage(p);
}

void createquest::Command1_Click(Program& p) {
  EditorState e(p);
  // A count past what Load takes back would lose the pages beyond it.
  if (e.pg.ListCount() >= kMostPages) {
    p.MsgBox("A quest can have no more than " + std::to_string(kMostPages) + " pages.", 64);
    return;
  }
  std::string chosen = e.Text13.Text();
  if (!chosen.empty()) {
    e.pg.AddItem(chosen);
    e.Text13.SetText("");
  } else {
    e.pg.AddItem(std::to_string(e.pg.ListCount() + 1));
  }
  WriteINI(p, kWorkingFile, kQuestData, kNumberOfPages, std::to_string(e.pg.ListCount()));
}

void createquest::Timer1_Timer(Program& p) {
  EditorState e(p);
  if (e.Check9.Value() == 1) e.Command7.SetEnabled(true);
  else if (e.Check9.Value() == 0) e.Command7.SetEnabled(false);
}

}  // namespace fw
