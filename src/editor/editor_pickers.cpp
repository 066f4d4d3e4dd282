#include "editor/editor_pickers.h"

#include "editor/page_fields.h"
#include "forms/program.h"

namespace fw {

std::string PickInto(Program& p, const PickerDecl& picker, std::string_view section, std::string_view key) {
  FormSurface& s = p.surface();
  FileDialog dialog(s, picker.form, picker.dialog);
  dialog.SetInitDir(p.AppPath());
  if (!p.ShowOpen(dialog.id())) return "";
  TextBox field(s, picker.form, picker.field);
  const std::string path = dialog.FileName();
  field.SetText(path);
  // The field's own Change has written the key already, where it has one.
  WriteBound(p, section, key, field.Text());
  return path;
}

void ShowPicked(Program& p, const Image& preview, const std::string& path) {
  try {
    preview.SetPicture(p.LoadPicture(path));
  } catch (const Failure& failure) {
    // The path stays in the field and the key: the quest may be played
    // where the file is readable.
    p.MsgBox("This picture can't be shown here (" + std::string(failure.what()) + "): " + path, 64);
  }
}

}  // namespace fw
