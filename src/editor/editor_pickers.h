#pragma once
#include <string>
#include <string_view>

#include "forms/controls.h"

namespace fw {

class Program;

// A media picker of the editor's windows: its form, its file dialog and the
// field the chosen path goes into.
struct PickerDecl {
  const char* form;
  const char* dialog;
  const char* field;
};

// Opens the picker's dialog in the program's folder; on an answer the field
// shows the full path as chosen and the key of section takes it. Gives the
// path, "" when the dialog was cancelled and nothing changed.
std::string PickInto(Program& p, const PickerDecl& picker, std::string_view section, std::string_view key);

// Shows a picked picture in its preview. A file that is no picture the
// window can show leaves the preview as it was and says so.
void ShowPicked(Program& p, const Image& preview, const std::string& path);

}  // namespace fw
