#include "bindings/web/web_windows.h"

#include <cstdlib>
#include <string>

#include "bindings/web/web_bridge.h"
#include "forms/codepage.h"
#include "forms/program.h"

namespace fw {
namespace {

std::string U(std::string_view cp1252) { return Utf8FromCp1252(cp1252); }

void LookJson(web::Json& j, const Look& look) {
  j.Key("look").Open('{');
  j.Field("fore", look.foreColor).Field("back", look.backColor).Flag("transparent", look.transparent);
  j.Field("font", look.font.name ? look.font.name : "").Field("points", look.font.points).Flag("bold", look.font.bold);
  j.Flag("multiLine", look.multiLine).Flag("scrollBar", look.scrollBar).Flag("readOnly", look.readOnly);
  j.Flag("hand", look.handCursor).Field("art", look.art ? look.art : "").Field("border", look.borderWidth);
  j.Close('{');
}

// What a screen reader calls a control: its caption, or its hover text where
// the caption is the control's value (a text box's text) or there is none.
std::string AccessibleName(const ControlDecl& d, const std::string& caption) {
  bool captionIsValue = d.kind == Kind::TextBox || d.kind == Kind::ListBox || d.kind == Kind::DirListBox;
  std::string name = !captionIsValue && !caption.empty() ? caption : d.toolTip;
  std::string plain;
  for (std::size_t i = 0; i < name.size(); ++i)  // without the "&" that marks a menu's key letter
    if (name[i] != '&' || (i + 1 < name.size() && name[++i] == '&')) plain += name[i];
  return U(plain);
}

int Number(const std::string& field) {
  try {
    return std::stoi(field);
  } catch (...) {
    return -1;
  }
}

}  // namespace

void WebWindows::FormLoaded(int form) { pending_.insert(form); }

void WebWindows::FormUnloaded(int form) {
  pending_.erase(form);
  reach_.erase(form);
  if (built_.erase(form)) web::DropForm(form);
}

void WebWindows::FormChanged(int form, Prop) {
  if (built_.count(form)) web::UpdateForm(form, FormState(form));
  else if (pending_.count(form) && program_.surface().Form(form).visible) Build(form);
}

void WebWindows::ControlChanged(ControlId id, Prop prop) {
  if (!built_.count(id.form)) return;
  web::UpdateControl(id.form, id.index, ControlState(id, prop == Prop::List || prop == Prop::Path));
}

// A form's window is made when it first shows: a form that loads hidden (the
// game window, during the splash) costs the start nothing.
void WebWindows::Build(int form) {
  pending_.erase(form);
  built_.insert(form);
  reach_[form].assign(program_.surface().Table(form).controls.size(), -1);
  web::BuildForm(form, Describe(form));
}

std::string WebWindows::Describe(int form) {
  FormSurface& s = program_.surface();
  const FormDecl& t = s.Table(form);
  web::Json j;
  j.Open('{');
  j.Field("name", t.name).Field("width", t.width).Field("tableHeight", t.height);
  j.Flag("noBorder", t.noBorder).Flag("centred", t.centred).Flag("fixed", t.fixedBorder);
  LookJson(j, t.look);
  j.Key("keys").Open('[');
  for (const KeyDecl& k : t.keys) j.Str(k.key);
  j.Close('[');
  j.Key("state").Open('{').Close('{');
  j.Key("controls").Open('[');
  for (int i = 0; i < static_cast<int>(t.controls.size()); ++i) {
    ControlId id{form, i};
    const ControlDecl& d = t.controls[i];
    j.Open('{');
    j.Field("name", d.name).Field("kind", KindName(d.kind)).Field("parent", s.At(id).parent);
    j.Field("tip", U(d.toolTip)).Field("maxLength", d.maxLength);
    j.Flag("clicks", s.Answers(id, Event::Click)).Flag("moves", s.Answers(id, Event::MouseMove));
    LookJson(j, d.look);
    j.Close('{');
  }
  j.Close('[');
  j.Close('{');
  // The state after the table: the page builds the elements first.
  std::string text = j.Text();
  text.replace(text.find("\"state\":{}"), 10, "\"state\":" + FormState(form));
  std::string states = ",\"values\":[";
  for (int i = 0; i < static_cast<int>(t.controls.size()); ++i)
    states += (i ? "," : "") + ControlState({form, i}, true);
  text.insert(text.size() - 1, states + "]");
  return text;
}

std::string WebWindows::FormState(int form) {
  const fw::FormState& f = program_.surface().Form(form);
  web::Json j;
  j.Open('{');
  j.Field("caption", U(f.caption)).Field("width", f.width).Field("height", f.height);
  j.Flag("visible", f.visible).Field("picture", f.picture.host);
  j.Close('{');
  return j.Text();
}

std::string WebWindows::ControlState(ControlId id, bool withList) {
  Program& p = program_;
  const Control& c = p.surface().At(id);
  web::Json j;
  j.Open('{');
  j.Field("caption", U(c.caption)).Field("name", AccessibleName(*c.decl, c.caption));
  j.Field("left", c.left).Field("top", c.top).Field("width", c.width).Field("height", c.height);
  j.Flag("visible", c.visible).Flag("enabled", c.enabled);
  switch (c.decl->kind) {
    case Kind::CheckBox: j.Field("check", c.checkValue); break;
    case Kind::OptionButton: j.Flag("option", c.optionValue); break;
    case Kind::ProgressBar: j.Field("value", c.barValue).Field("max", c.barMax); break;
    case Kind::TextBox: j.Field("selStart", c.selStart); break;
    case Kind::PictureBox:
    case Kind::Image: j.Field("picture", c.picture.host); break;
    case Kind::DirListBox:
      if (withList) j.Field("folder", p.HostFile(c.caption));
      break;
    case Kind::ListBox:
      j.Field("listIndex", c.listIndex);
      if (withList) {
        j.Key("list").Open('[');
        for (const std::string& entry : c.list) j.Str(U(entry));
        j.Close('[');
      }
      break;
    default: break;
  }
  j.Close('{');
  return j.Text();
}

void WebWindows::SendReach() {
  FormSurface& s = program_.surface();
  for (auto& [form, known] : reach_) {
    if (!s.IsLoaded(form)) continue;
    web::Json changes;
    changes.Open('[');
    bool any = false;
    for (int i = 0; i < static_cast<int>(known.size()); ++i) {
      ControlId id{form, i};
      if (!s.Answers(id, Event::Click) && s.Decl(id).kind != Kind::TextBox && s.Decl(id).kind != Kind::ListBox)
        continue;
      int now = s.Unreachable(id).empty() ? 1 : 0;
      if (known[i] == now) continue;
      known[i] = now;
      changes.Num(i).Num(now);
      any = true;
    }
    changes.Close('[');
    if (any) web::UpdateControl(form, -1, "{\"reach\":" + changes.Text() + "}");
  }
}

void WebWindows::PressKey(int form, std::string_view key) {
  FormSurface& s = program_.surface();
  const FormDecl& t = s.Table(form);
  for (const KeyDecl& k : t.keys) {
    if (key != k.key) continue;
    ControlId id = s.Id(t.name, k.control);
    UserAction action = s.Decl(id).kind == Kind::OptionButton ? UserAction::Select : UserAction::Click;
    if (CannotAct(s, id, action).empty()) {
      Act(program_, id, action);
      return;
    }
  }
}

bool WebWindows::Dispatch(const std::vector<std::string>& f) {
  FormSurface& s = program_.surface();
  auto formOf = [&](std::size_t at) {
    int form = f.size() > at ? Number(f[at]) : -1;
    return form >= 0 && form < s.FormCount() && built_.count(form) ? form : -1;
  };
  auto controlOf = [&](int form, std::size_t at) {
    int index = f.size() > at ? Number(f[at]) : -1;
    bool known = form >= 0 && index >= 0 && index < static_cast<int>(s.Table(form).controls.size());
    return known ? ControlId{form, index} : ControlId{};
  };
  const std::string& kind = f[0];
  if (kind == "act" && f.size() >= 6) {
    ControlId id = controlOf(formOf(1), 2);
    int action = Number(f[3]);
    if (id.index >= 0 && action >= 0 && action <= static_cast<int>(UserAction::Hover))
      Act(program_, id, static_cast<UserAction>(action), Cp1252FromUtf8(f[5]), Number(f[4]));
  } else if (kind == "at" && f.size() >= 5) {
    if (ControlId id = controlOf(formOf(1), 2); id.index >= 0)
      ClickAt(program_, id, std::strtof(f[3].c_str(), nullptr), std::strtof(f[4].c_str(), nullptr));
  } else if (kind == "key" && f.size() >= 3) {
    if (int form = formOf(1); form >= 0) PressKey(form, f[2]);
  } else if (kind == "close" && f.size() >= 2) {
    if (int form = formOf(1); form >= 0) CloseForm(program_, form);
  } else {
    return false;
  }
  return true;
}

}  // namespace fw
