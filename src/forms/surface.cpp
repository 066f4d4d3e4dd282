#include "forms/surface.h"

#include <algorithm>
#include <stdexcept>

#include "forms/codepage.h"
#include "forms/failure.h"
#include "forms/program.h"

namespace fw {

SurfaceObserver FormSurface::nullObserver_;

namespace {
// Sums of clock readings and intervals differ from later readings in the last
// bits; a tick due within this much of now is due now.
constexpr double kClockSlack = 1e-7;
}  // namespace

FormSurface::FormSurface(Program& program, std::span<const FormDef> forms)
    : program_(program), observer_(&nullObserver_) {
  forms_.reserve(forms.size());
  for (const FormDef& def : forms) {
    FormState f;
    f.def = &def;
    formByName_.emplace(def.table->name, static_cast<int>(forms_.size()));
    int i = 0;
    for (const ControlDecl& c : def.table->controls) f.byName.emplace(c.name, i++);
    forms_.push_back(std::move(f));
  }
}

int FormSurface::FindForm(std::string_view name) const {
  auto it = formByName_.find(std::string(name));
  return it == formByName_.end() ? -1 : it->second;
}

ControlId FormSurface::FindControl(int form, std::string_view name) const {
  if (form < 0 || form >= FormCount()) return {form, -1};
  const auto& names = forms_[form].byName;
  auto it = names.find(std::string(name));
  return {form, it == names.end() ? -1 : it->second};
}

ControlId FormSurface::Id(std::string_view form, std::string_view control) const {
  ControlId id = FindControl(FindForm(form), control);
  if (id.index < 0)
    throw std::logic_error("no control " + std::string(form) + "." + std::string(control));
  return id;
}

const ControlDecl& FormSurface::Decl(ControlId id) const {
  return forms_[id.form].def->table->controls[id.index];
}

FormState& FormSurface::Form(int form) {
  if (!forms_[form].loaded) Load(form);
  return forms_[form];
}

// Builds the run-time values from the table, as a fresh form has them.
void FormSurface::Build(FormState& f) {
  const FormDecl& t = *f.def->table;
  f.caption = t.caption;
  f.width = t.width;
  f.height = t.height;
  f.picture = {};
  f.icon = {};
  f.visible = false;
  f.controls.assign(t.controls.size(), Control{});
  f.timers.clear();
  f.handlers.assign((t.controls.size() + 1) * kEventCount, nullptr);
  for (std::size_t i = 0; i < t.controls.size(); ++i) {
    const ControlDecl& d = t.controls[i];
    Control& c = f.controls[i];
    c.decl = &d;
    c.parent = -1;
    if (*d.parent) {
      auto it = f.byName.find(d.parent);
      if (it != f.byName.end()) c.parent = it->second;
    }
    c.caption = d.caption;
    // A directory list opens on the current folder.
    if (d.kind == Kind::DirListBox) c.caption = Cp1252FromUtf8(program_.CurrentDir());
    c.left = d.left, c.top = d.top, c.width = d.width, c.height = d.height;
    c.visible = d.visible;
    c.enabled = d.enabled;
    c.list.assign(d.items.begin(), d.items.end());
    c.checkValue = d.value;
    if (d.kind == Kind::Timer) f.timers.push_back(static_cast<int>(i));
  }
  for (const HandlerDecl& h : f.def->handlers) {
    int index = static_cast<int>(t.controls.size());
    if (std::string_view(h.control) != "Form") {
      auto it = f.byName.find(h.control);
      if (it == f.byName.end()) continue;  // the registry test reports these
      index = it->second;
    }
    f.handlers[index * kEventCount + static_cast<int>(h.event)] = &h;
  }
}

void FormSurface::Load(int form) {
  FormState& f = forms_[form];
  Build(f);
  f.loaded = true;
  double now = program_.Now();
  for (int t : f.timers) {
    Control& c = f.controls[t];
    if (c.enabled && c.decl->interval > 0) c.nextDue = now + c.decl->interval / 1000.0;
  }
  ++changes_;
  observer_->FormLoaded(form);
  RaiseForm(form, Event::Load);
}

void FormSurface::Show(int form) {
  FormState& f = Form(form);
  if (f.visible) return;
  f.visible = true;
  FormChanged(form, Prop::Visible);
}

void FormSurface::Hide(int form) {
  FormState& f = Form(form);
  if (!f.visible) return;
  f.visible = false;
  FormChanged(form, Prop::Visible);
}

// A user's close and the code's own Unload both ask Form_QueryUnload, and the
// handlers take no unload mode, so who closes the form changes nothing here.
bool FormSurface::Unload(int form, bool /*byUser*/) {
  if (!forms_[form].loaded) return true;
  const HandlerDecl* h = Handler(form, static_cast<int>(forms_[form].controls.size()), Event::QueryUnload);
  if (h && h->unload && !program_.Ended() && !forms_[form].queryingUnload) {
    bool cancel = false;
    forms_[form].queryingUnload = true;
    try {
      h->unload(program_, cancel);
    } catch (...) {
      forms_[form].queryingUnload = false;
      throw;
    }
    forms_[form].queryingUnload = false;
    if (cancel) return false;
  }
  FormState& f = forms_[form];
  if (!f.loaded) return true;  // the handler unloaded it already
  f.loaded = false;
  f.visible = false;
  f.controls.clear();
  f.timers.clear();
  ++changes_;
  observer_->FormUnloaded(form);
  return true;
}

void FormSurface::SetFormCaption(int form, std::string_view caption) {
  Form(form).caption = caption;
  FormChanged(form, Prop::Caption);
}

void FormSurface::SetFormPicture(int form, Picture picture) {
  Form(form).picture = std::move(picture);
  FormChanged(form, Prop::Picture);
}

void FormSurface::SetFormIcon(int form, Picture icon) {
  Form(form).icon = std::move(icon);
  FormChanged(form, Prop::Icon);
}

void FormSurface::SetFormHeight(int form, float twips) {
  Form(form).height = twips;
  FormChanged(form, Prop::Height);
}

Control& FormSurface::At(ControlId id) { return Form(id.form).controls[id.index]; }

bool FormSurface::Shown(ControlId id) {
  FormState& f = Form(id.form);
  if (!f.visible) return false;
  for (int i = id.index; i >= 0; i = f.controls[i].parent)
    if (!f.controls[i].visible) return false;
  return true;
}

namespace {

// The visible panel that lies over a control's middle, if any: a panel of
// the form declared after the control's own top-level ancestor stacks above it.
const char* CoveringPanel(const FormState& f, int index) {
  if (f.controls[index].decl->kind == Kind::Menu) return nullptr;
  float x = f.controls[index].width / 2, y = f.controls[index].height / 2;
  int top = index;
  for (int i = index; i >= 0; i = f.controls[i].parent) {
    x += f.controls[i].left;
    y += f.controls[i].top;
    top = i;
  }
  for (std::size_t i = top + 1; i < f.controls.size(); ++i) {
    const Control& c = f.controls[i];
    if (c.parent >= 0 || c.decl->kind != Kind::PictureBox || !c.visible) continue;
    if (x >= c.left && x < c.left + c.width && y >= c.top && y < c.top + c.height) return c.decl->name;
  }
  return nullptr;
}

}  // namespace

std::string FormSurface::Unreachable(ControlId id) {
  if (!Shown(id)) return "is not on screen";
  FormState& f = Form(id.form);
  for (int i = id.index; i >= 0; i = f.controls[i].parent)
    if (!f.controls[i].enabled) return "is disabled";
  if (const char* panel = CoveringPanel(f, id.index)) return std::string("is covered by ") + panel;
  return "";
}

void FormSurface::Changed(ControlId id, Prop prop) {
  ++changes_;
  observer_->ControlChanged(id, prop);
}

void FormSurface::FormChanged(int form, Prop prop) {
  ++changes_;
  observer_->FormChanged(form, prop);
}

void FormSurface::SetCaption(ControlId id, std::string_view text) {
  At(id).caption = text;
  Changed(id, Prop::Caption);
}

void FormSurface::SetText(ControlId id, std::string_view text) {
  Control& c = At(id);
  if (c.caption == text) return;
  c.caption = text;
  c.selStart = std::min<int>(c.selStart, static_cast<int>(c.caption.size()));
  Changed(id, Prop::Text);
  Raise(id, Event::Change);
}

void FormSurface::SetVisible(ControlId id, bool visible) {
  Control& c = At(id);
  if (c.visible == visible) return;
  c.visible = visible;
  Changed(id, Prop::Visible);
}

void FormSurface::SetEnabled(ControlId id, bool enabled) {
  Control& c = At(id);
  if (c.decl->kind == Kind::Timer && enabled && !c.enabled && c.decl->interval > 0) {
    c.nextDue = program_.Now() + c.decl->interval / 1000.0;
    c.settledAt = -1;
  }
  if (c.enabled == enabled) return;
  c.enabled = enabled;
  Changed(id, Prop::Enabled);
}

void FormSurface::SetLeft(ControlId id, float twips) {
  At(id).left = twips;
  Changed(id, Prop::Left);
}

void FormSurface::SetTop(ControlId id, float twips) {
  At(id).top = twips;
  Changed(id, Prop::Top);
}

void FormSurface::SetWidth(ControlId id, float twips) {
  At(id).width = twips;
  Changed(id, Prop::Width);
}

void FormSurface::SetHeight(ControlId id, float twips) {
  At(id).height = twips;
  Changed(id, Prop::Height);
}

void FormSurface::SetSelStart(ControlId id, int pos) {
  Control& c = At(id);
  c.selStart = std::clamp(pos, 0, static_cast<int>(c.caption.size()));
  Changed(id, Prop::SelStart);
}

void FormSurface::SetCheckValue(ControlId id, int value) {
  Control& c = At(id);
  // A check box is clear, set or grayed, and refuses any other value.
  if (value < 0 || value > 2) throw Failure("Invalid property value");
  if (c.checkValue == value) return;
  c.checkValue = value;
  Changed(id, Prop::Value);
  Raise(id, Event::Click);
}

void FormSurface::SetOptionValue(ControlId id, bool value) {
  FormState& f = Form(id.form);
  if (value) {
    for (std::size_t i = 0; i < f.controls.size(); ++i) {
      Control& other = f.controls[i];
      if (static_cast<int>(i) == id.index || other.decl->kind != Kind::OptionButton) continue;
      if (other.optionValue) {
        other.optionValue = false;
        Changed({id.form, static_cast<int>(i)}, Prop::Value);
      }
    }
  }
  f.controls[id.index].optionValue = value;
  Changed(id, Prop::Value);
}

void FormSurface::SetSelected(ControlId id, int index, bool selected) {
  Control& c = At(id);
  if (index < 0 || index >= static_cast<int>(c.list.size())) throw Failure("Invalid property array index");
  if (!selected) {
    if (c.listIndex == index) c.listIndex = -1;
    Changed(id, Prop::ListIndex);
    return;
  }
  c.listIndex = index;
  Changed(id, Prop::ListIndex);
  Raise(id, Event::Click);
}

void FormSurface::AddItem(ControlId id, std::string_view item) {
  At(id).list.emplace_back(item);
  Changed(id, Prop::List);
}

void FormSurface::RemoveItem(ControlId id, int index) {
  Control& c = At(id);
  if (index < 0 || index >= static_cast<int>(c.list.size())) throw Failure("Invalid procedure call or argument");
  c.list.erase(c.list.begin() + index);
  if (c.listIndex == index) c.listIndex = -1;
  else if (c.listIndex > index) --c.listIndex;
  Changed(id, Prop::List);
}

void FormSurface::ClearList(ControlId id) {
  Control& c = At(id);
  c.list.clear();
  c.listIndex = -1;
  Changed(id, Prop::List);
}

void FormSurface::SetBarValue(ControlId id, float value) {
  Control& c = At(id);
  if (!(value >= 0 && value <= c.barMax)) throw Failure("Invalid property value");
  c.barValue = value;
  Changed(id, Prop::Value);
}

void FormSurface::SetBarMax(ControlId id, float max) {
  Control& c = At(id);
  if (!(max >= 0)) throw Failure("Invalid property value");
  c.barMax = max;
  c.barValue = std::min(c.barValue, max);  // the bar never stands past its end
  Changed(id, Prop::Max);
}

void FormSurface::SetPicture(ControlId id, Picture picture) {
  At(id).picture = std::move(picture);
  Changed(id, Prop::Picture);
}

void FormSurface::SetFileName(ControlId id, std::string_view path) {
  Control& c = At(id);
  c.fileName = path;
  std::size_t cut = c.fileName.find_last_of("/\\");
  c.fileTitle = cut == std::string::npos ? c.fileName : c.fileName.substr(cut + 1);
  Changed(id, Prop::FileName);
}

void FormSurface::SetPath(ControlId id, std::string_view path) {
  Control& c = At(id);
  if (c.caption == path) return;
  c.caption = path;
  Changed(id, Prop::Path);
  Raise(id, Event::Change);
}

void FormSurface::SetInitDir(ControlId id, std::string_view dir) {
  At(id).initDir = dir;
  Changed(id, Prop::InitDir);
}

void FormSurface::SetMedia(ControlId id, Prop prop, int value) {
  Control& c = At(id);
  if (prop == Prop::PlayCount) c.playCount = value;
  else if (prop == Prop::PlayState) c.playState = value;
  else if (prop == Prop::ReadyState) c.readyState = value;
  else throw std::logic_error("not a media property");
  Changed(id, prop);
}

void FormSurface::SetMediaFile(ControlId id, std::string_view file) {
  At(id).fileName = file;
  Changed(id, Prop::FileName);
}

void FormSurface::Restore(ControlId id, const Control& before) {
  Control& c = At(id);
  auto put = [&](auto& field, const auto& value, Prop prop) {
    if (field == value) return;
    field = value;
    Changed(id, prop);
  };
  bool text = c.decl->kind == Kind::TextBox;
  put(c.caption, before.caption, c.decl->kind == Kind::DirListBox ? Prop::Path : text ? Prop::Text : Prop::Caption);
  put(c.selStart, before.selStart, Prop::SelStart);
  put(c.left, before.left, Prop::Left);
  put(c.top, before.top, Prop::Top);
  put(c.width, before.width, Prop::Width);
  put(c.height, before.height, Prop::Height);
  put(c.visible, before.visible, Prop::Visible);
  put(c.enabled, before.enabled, Prop::Enabled);
  put(c.optionValue, before.optionValue, Prop::Value);
  put(c.checkValue, before.checkValue, Prop::Value);
  put(c.list, before.list, Prop::List);
  put(c.listIndex, before.listIndex, Prop::ListIndex);
  put(c.barMax, before.barMax, Prop::Max);
  put(c.barValue, before.barValue, Prop::Value);
  put(c.picture, before.picture, Prop::Picture);
  put(c.initDir, before.initDir, Prop::InitDir);
  c.clickX = before.clickX;
  c.clickY = before.clickY;
  if (c.decl->kind == Kind::MediaPlayer) return;
  c.fileTitle = before.fileTitle;
  put(c.fileName, before.fileName, Prop::FileName);
}

const HandlerDecl* FormSurface::Handler(int form, int index, Event event) const {
  const FormState& f = forms_[form];
  std::size_t slot = static_cast<std::size_t>(index) * kEventCount + static_cast<int>(event);
  return slot < f.handlers.size() ? f.handlers[slot] : nullptr;
}

void FormSurface::Raise(ControlId id, Event event) {
  Form(id.form);
  if (program_.Ended()) return;
  if (const HandlerDecl* h = Handler(id.form, id.index, event); h && h->plain) h->plain(program_);
}

void FormSurface::RaiseForm(int form, Event event) {
  if (program_.Ended()) return;
  const FormState& f = forms_[form];
  const HandlerDecl* h = Handler(form, static_cast<int>(f.controls.size()), event);
  if (!h) return;
  if (h->plain) {
    h->plain(program_);
  } else if (h->unload) {
    bool cancel = false;
    h->unload(program_, cancel);
  }
}

double FormSurface::NextTimerDue() const {
  double next = std::numeric_limits<double>::infinity();
  for (const FormState& f : forms_) {
    if (!f.loaded) continue;
    for (int t : f.timers) {
      const Control& c = f.controls[t];
      if (c.enabled && !c.ticking && c.decl->interval > 0) next = std::min(next, c.nextDue);
    }
  }
  return next;
}

bool FormSurface::FireDueTimer(double now) {
  int bestForm = -1, best = -1;
  double due = std::numeric_limits<double>::infinity();
  for (int fi = 0; fi < FormCount(); ++fi) {
    const FormState& f = forms_[fi];
    if (!f.loaded) continue;
    for (int t : f.timers) {
      const Control& c = f.controls[t];
      if (c.enabled && !c.ticking && c.decl->interval > 0 && c.nextDue <= now + kClockSlack &&
          c.nextDue < due) {
        due = c.nextDue;
        bestForm = fi;
        best = t;
      }
    }
  }
  if (best < 0) return false;
  ControlId id{bestForm, best};
  Control& c = forms_[bestForm].controls[best];
  // A late tick is not made up for: the next one falls an interval from now.
  c.nextDue = now + c.decl->interval / 1000.0;
  c.ticking = true;
  struct Reset {
    FormSurface* s;
    ControlId id;
    long before;
    ~Reset() {
      FormState& f = s->forms_[id.form];
      if (!f.loaded || id.index >= static_cast<int>(f.controls.size())) return;
      Control& c = f.controls[id.index];
      c.ticking = false;
      c.settledAt = s->changes_ == before ? before : -1;
    }
  } reset{this, id, changes_};
  Raise(id, Event::Timer);
  return true;
}

double FormSurface::NextUnsettledTimerDue() const {
  double next = std::numeric_limits<double>::infinity();
  for (const FormState& f : forms_) {
    if (!f.loaded) continue;
    for (int t : f.timers) {
      const Control& c = f.controls[t];
      if (c.enabled && !c.ticking && c.decl->interval > 0 && c.settledAt != changes_)
        next = std::min(next, c.nextDue);
    }
  }
  return next;
}

}  // namespace fw
