#pragma once
#include <array>
#include <string>
#include <string_view>

namespace fw {

class Program;

inline constexpr const char* kStorySection = "Story Info";
inline constexpr const char* kQuestData = "Quest Data";
inline constexpr const char* kNumberOfPages = "Number Of Pages";

// One field of the editor and the key it is bound to: a page key of the
// selected page, or a key of the story.
struct Binding {
  const char* control;
  const char* key;
  bool check = false;  // a check box, written as "1" or "0"
  bool story = false;  // in Story Info rather than the selected page
};

inline constexpr Binding kBindings[] = {
    {"Text1", "Page Text"},
    {"Text2", "Option One"},
    {"Text3", "Option Two"},
    {"Text4", "Option Three"},
    {"Text5", "Option Four"},
    {"Text6", "Option One Destination Page"},
    {"Text7", "Option Two Destination Page"},
    {"Text8", "Option Three Destination Page"},
    {"Text9", "Option Four Destination Page"},
    {"Text17", "Option One Score"},
    {"Text16", "Option Two Score"},
    {"Text15", "Option Three Score"},
    {"Text14", "Option Four Score"},
    {"Text21", "Key Item1"},
    {"Text22", "Key Item2"},
    {"Text23", "Key Item3"},
    {"Text24", "Key Item4"},
    {"Check1", "Add1", true},
    {"Check2", "Add2", true},
    {"Check3", "Add3", true},
    {"Check4", "Add4", true},
    {"Check5", "Required1", true},
    {"Check6", "Required2", true},
    {"Check7", "Required3", true},
    {"Check8", "Required4", true},
    {"Text18", "Music"},
    {"Text25", "Movie"},
    {"Text26", "Mp3"},
    {"Text20", "Image"},
    {"Text19", "Location"},
    {"Check9", "Battle", true},
    {"Check10", "HealChar", true},
    {"Check11", "AutoRepeat", true},
    {"Text10", "Title", false, true},
    {"Text11", "Author", false, true},
    {"Text12", "Version", false, true},
};

// The binding of a field; every name passed is one of the table's.
constexpr const Binding& BindingOf(std::string_view control) {
  for (const Binding& b : kBindings)
    if (control == b.control) return b;
  return kBindings[0];
}

inline constexpr std::array kCheckOrder = {"Check1", "Check2", "Check3", "Check4",  "Check5", "Check6",
                                           "Check7", "Check8", "Check9", "Check10", "Check11"};

// The write-through of one field: its key takes the field's value, in the
// selected page's section (nothing is written while no page is selected)
// or in Story Info.
void WriteField(Program& p, const char* control);

// The key write every bound field of the editor's windows makes: while a
// page is being read into the fields, writing back the value just read is
// left out, as it would leave the file as it is.
void WriteBound(Program& p, std::string_view section, std::string_view key, std::string_view value);

// A key of the working file, from the text a page read holds while one runs.
std::string ReadBound(Program& p, std::string_view section, std::string_view key);

// The selected entry of the page list: the section of every page key.
std::string SelectedPage(Program& p);

}  // namespace fw
