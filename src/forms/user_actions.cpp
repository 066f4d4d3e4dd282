#include "forms/user_actions.h"

#include <algorithm>
#include <cctype>
#include <initializer_list>

#include "forms/program.h"

namespace fw {
namespace {

// Whether a control of the kind takes the action.
bool Takes(Kind kind, UserAction action) {
  auto any = [kind](std::initializer_list<Kind> kinds) {
    return std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
  };
  switch (action) {
    case UserAction::Click:
      return any({Kind::Label, Kind::CommandButton, Kind::CheckBox, Kind::ListBox, Kind::PictureBox, Kind::Image,
                  Kind::Menu});
    case UserAction::Select: return kind == Kind::OptionButton;
    case UserAction::Type: return kind == Kind::TextBox || kind == Kind::DirListBox;
    case UserAction::Check: return kind == Kind::CheckBox;
    case UserAction::Choose: return kind == Kind::ListBox;
    case UserAction::Hover:
      return any({Kind::Label, Kind::TextBox, Kind::CommandButton, Kind::CheckBox, Kind::ListBox,
                  Kind::PictureBox, Kind::Image});
  }
  return false;
}

// Why the value does not fit the action: "" when it does.
std::string BadValue(FormSurface& s, ControlId id, UserAction action, std::string_view text, int value) {
  // A directory list reaches only folders there are.
  if (action == UserAction::Type && s.Decl(id).kind == Kind::DirListBox) {
    Program& p = s.program();
    if (!p.services().files->IsDirectory(p.HostFile(text))) return "has no folder " + std::string(text);
  }
  if (action == UserAction::Check && value != 0 && value != 1) return "takes 0 or 1";
  if (action == UserAction::Choose && (value < 0 || value >= static_cast<int>(s.At(id).list.size())))
    return "has no entry " + std::to_string(value);
  return "";
}

}  // namespace

std::string_view WithinMaxLength(const ControlDecl& box, std::string_view text) {
  if (box.maxLength <= 0 || text.size() <= static_cast<std::size_t>(box.maxLength)) return text;
  text = text.substr(0, box.maxLength);
  // A box takes a line break whole or not at all.
  if (text.ends_with('\r')) text.remove_suffix(1);
  return text;
}

std::string CannotAct(FormSurface& s, ControlId id, UserAction action) {
  const ControlDecl& d = s.Decl(id);
  if (!Takes(d.kind, action))
    return std::string("is a ") + KindName(d.kind) + ", which does not take that action";
  if (action == UserAction::Type && d.look.readOnly) return "is read-only";
  return s.Unreachable(id);
}

std::string Act(Program& p, ControlId id, UserAction action, std::string_view text, int value) {
  FormSurface& s = p.surface();
  std::string why = CannotAct(s, id, action);
  if (why.empty()) why = BadValue(s, id, action, text, value);
  if (!why.empty()) return why;
  p.RunEvent([&] {
    switch (action) {
      case UserAction::Click:
        s.At(id).clickX = s.At(id).clickY = -1;
        s.Raise(id, Event::Click);
        break;
      case UserAction::Select: s.SetOptionValue(id, true); break;
      case UserAction::Type:
        // A directory list goes to the folder as the user's clicks would take it.
        if (s.Decl(id).kind == Kind::DirListBox) {
          if (s.At(id).caption == text) s.Raise(id, Event::Change);
          else s.SetPath(id, text);
          break;
        }
        // The user replaces the text: one Change, even for the same text.
        text = WithinMaxLength(s.Decl(id), text);
        if (s.At(id).caption == text) s.Raise(id, Event::Change);
        else s.SetText(id, text);
        break;
      case UserAction::Check:
        if (s.At(id).checkValue == value) s.Raise(id, Event::Click);
        else s.SetCheckValue(id, value);
        break;
      case UserAction::Choose: s.SetSelected(id, value, true); break;
      case UserAction::Hover: s.Raise(id, Event::MouseMove); break;
    }
  });
  return "";
}

std::string ClickAt(Program& p, ControlId id, float x, float y) {
  FormSurface& s = p.surface();
  Kind kind = s.Decl(id).kind;
  if (kind != Kind::PictureBox && kind != Kind::Image)
    return std::string("is a ") + KindName(kind) + ", which does not take a click at a point";
  if (std::string why = CannotAct(s, id, UserAction::Click); !why.empty()) return why;
  const Control& c = s.At(id);
  if (!(x >= 0 && y >= 0 && x < c.width && y < c.height)) return "has no point there";
  p.RunEvent([&] {
    s.At(id).clickX = x;
    s.At(id).clickY = y;
    s.Raise(id, Event::Click);
  });
  return "";
}

namespace {

bool SameKey(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return std::tolower(static_cast<unsigned char>(x)) ==
                                                std::tolower(static_cast<unsigned char>(y)); });
}

UserAction KeyAction(FormSurface& s, ControlId id) {
  return s.Decl(id).kind == Kind::OptionButton ? UserAction::Select : UserAction::Click;
}

}  // namespace

const char* KeyOf(const FormDecl& form, std::string_view control) {
  for (const KeyDecl& k : form.keys)
    if (control == k.control) return k.key;
  return nullptr;
}

std::vector<ControlId> KeyControls(FormSurface& s, int form, std::string_view key) {
  std::vector<ControlId> controls;
  const FormDecl& t = s.Table(form);
  for (const KeyDecl& k : t.keys)
    if (SameKey(k.key, key)) controls.push_back(s.Id(t.name, k.control));
  return controls;
}

std::string PressKey(Program& p, int form, std::string_view key) {
  FormSurface& s = p.surface();
  std::vector<ControlId> controls = KeyControls(s, form, key);
  if (controls.empty()) return "has no key " + std::string(key);
  for (ControlId id : controls)
    if (CannotAct(s, id, KeyAction(s, id)).empty()) return Act(p, id, KeyAction(s, id));
  ControlId first = controls.front();
  return "cannot take key " + std::string(key) + ": " + s.Decl(first).name + " " + CannotAct(s, first, KeyAction(s, first));
}

std::string CloseForm(Program& p, int form) {
  FormSurface& s = p.surface();
  if (!s.IsLoaded(form) || !s.Form(form).visible) return "is not open";
  p.RunEvent([&] { s.Unload(form, true); });
  return "";
}

std::string ClickForm(Program& p, int form) {
  FormSurface& s = p.surface();
  if (!s.IsLoaded(form) || !s.Form(form).visible) return "is not open";
  if (!s.AnswersForm(form, Event::Click)) return "takes no click";
  p.RunEvent([&] { s.RaiseForm(form, Event::Click); });
  return "";
}

}  // namespace fw
