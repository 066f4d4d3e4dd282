#pragma once
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>
#include <vector>

#include "forms/form_table.h"

namespace fw {

class Program;

// Where a control lives: its form's and its own index in the tables.
struct ControlId {
  int form = -1;
  int index = -1;
  bool operator==(const ControlId&) const = default;
};

// A picture assigned to a control: the file it was loaded from, "" for none.
struct Picture {
  std::string path;  // as the logic named it
  std::string host;  // the file it was read from
  bool operator==(const Picture&) const = default;
};

// The run-time values of one control. One struct serves every kind; each kind
// uses the fields its properties need.
struct Control {
  const ControlDecl* decl = nullptr;
  int parent = -1;  // index of the container control, -1 for the form
  std::string caption;  // Caption, Text of a text box, or Path of a directory list
  float left = 0, top = 0, width = 0, height = 0;
  bool visible = true;
  bool enabled = true;
  bool optionValue = false;  // an option button's Value
  int checkValue = 0;        // a check box's Value
  std::vector<std::string> list;
  int listIndex = -1;
  float barValue = 0, barMax = 100;
  Picture picture;
  int selStart = 0;
  double nextDue = std::numeric_limits<double>::infinity();  // a timer's next tick
  bool ticking = false;                                      // its handler is running
  long settledAt = -1;  // the surface's change count after a tick of this timer that changed nothing
  std::string fileName, fileTitle, initDir;                  // a file dialog's answer
  int playCount = 1, playState = 0, readyState = 0;          // a media player
  // Where the last click on a picture fell, in twips from its top left
  // corner; -1 for a click that has no point (a key, a script's plain click).
  float clickX = -1, clickY = -1;
};

// The run-time values of one form.
struct FormState {
  const FormDef* def = nullptr;
  bool loaded = false;
  bool visible = false;
  bool queryingUnload = false;  // its Form_QueryUnload is running
  std::string caption;
  float width = 0, height = 0;
  Picture picture;
  Picture icon;
  std::vector<Control> controls;
  std::unordered_map<std::string, int> byName;
  std::vector<const HandlerDecl*> handlers;  // [control * kEventCount + event]; form's at the end
  std::vector<int> timers;
};

// The properties a binding or a script can name.
enum class Prop {
  Caption, Text, Visible, Enabled, Value, Left, Top, Width, Height, Picture, List,
  ListCount, ListIndex, SelStart, Max, Interval, FileName, FileTitle, InitDir, Filter,
  DefaultExt, PlayCount, PlayState, ReadyState, Icon, Path,
};

// A property's value as a script prints it.
using PropValue = std::variant<std::string, bool, double, float>;

// A property value as text: strings as they are, True or False, numbers as the
// logic prints them.
std::string FormatValue(const PropValue& value);

// Told of every change, so a window toolkit can mirror the values on screen.
class SurfaceObserver {
 public:
  virtual ~SurfaceObserver() = default;
  virtual void ControlChanged(ControlId /*id*/, Prop /*prop*/) {}
  virtual void FormChanged(int /*form*/, Prop /*prop*/) {}
  virtual void FormLoaded(int /*form*/) {}
  virtual void FormUnloaded(int /*form*/) {}
};

// Every control's property values, the forms' lifecycle, and the raising of
// events. The logic reads and writes controls only through this, so it runs
// the same with a window, in a terminal, or from a script.
class FormSurface {
 public:
  FormSurface(Program& program, std::span<const FormDef> forms);

  // -- Lookup. Names are as in the form tables.
  int FindForm(std::string_view name) const;  // -1 when unknown
  ControlId FindControl(int form, std::string_view name) const;  // index -1 when unknown
  ControlId Id(std::string_view form, std::string_view control) const;  // throws logic_error
  int FormCount() const { return static_cast<int>(forms_.size()); }
  const FormDecl& Table(int form) const { return *forms_[form].def->table; }
  const ControlDecl& Decl(ControlId id) const;
  // A form's table and handlers as the program was given them.
  const FormDef& Def(int form) const { return *forms_[form].def; }

  // -- Forms. Touching a form's state loads it first (Form_Load runs once).
  FormState& Form(int form);
  bool IsLoaded(int form) const { return forms_[form].loaded; }
  void Show(int form);
  void Hide(int form);
  // Raises Form_QueryUnload; unless cancelled, the form is gone until its next
  // reference. Gives false when the unload was cancelled. An Unload from
  // inside the form's own Form_QueryUnload asks nothing again: it destroys.
  bool Unload(int form, bool byUser);
  void SetFormCaption(int form, std::string_view caption);
  void SetFormPicture(int form, Picture picture);
  void SetFormIcon(int form, Picture icon);
  void SetFormHeight(int form, float twips);

  // -- Controls. Each access loads the control's form.
  Control& At(ControlId id);
  // Visible on screen: itself, every container above it, and its form.
  bool Shown(ControlId id);
  // Why the user cannot click the control: "" when they can, otherwise "is
  // not on screen", "is disabled" or "is covered by PANEL".
  std::string Unreachable(ControlId id);

  void SetCaption(ControlId id, std::string_view text);
  void SetText(ControlId id, std::string_view text);  // raises Change when it differs
  void SetVisible(ControlId id, bool visible);
  void SetEnabled(ControlId id, bool enabled);  // a timer starts counting anew
  void SetLeft(ControlId id, float twips);
  void SetTop(ControlId id, float twips);
  void SetWidth(ControlId id, float twips);
  void SetHeight(ControlId id, float twips);
  void SetSelStart(ControlId id, int pos);
  void SetCheckValue(ControlId id, int value);  // raises Click when it differs
  void SetOptionValue(ControlId id, bool value);  // true clears the form's other options
  void SetSelected(ControlId id, int index, bool selected);  // true raises Click
  void AddItem(ControlId id, std::string_view item);
  // Takes one entry out; a selection behind it moves up with it.
  void RemoveItem(ControlId id, int index);
  void ClearList(ControlId id);
  void SetBarValue(ControlId id, float value);  // outside 0..Max fails
  void SetBarMax(ControlId id, float max);
  void SetPicture(ControlId id, Picture picture);
  void SetFileName(ControlId id, std::string_view path);  // a file dialog's FileName and FileTitle
  void SetInitDir(ControlId id, std::string_view dir);
  void SetMedia(ControlId id, Prop prop, int value);  // PlayCount, PlayState, ReadyState
  void SetMediaFile(ControlId id, std::string_view file);
  // A directory list's folder (a program path); raises Change when it differs.
  void SetPath(ControlId id, std::string_view path);
  // Puts back the values a control had (a copy of it taken earlier): every
  // property that differs, each told to the bindings as a change of its
  // own, and no event raised. A timer's count and a media player's playing
  // are the running program's and stay as they are.
  void Restore(ControlId id, const Control& before);
  // Tells the bindings to read the folders of a directory list again.
  void RefreshDir(ControlId id) { Changed(id, Prop::Path); }

  // -- Generic access for scripts and bindings.
  // The value of a property; throws invalid_argument when the kind has none.
  PropValue Get(ControlId id, Prop prop, int index = 0);
  PropValue GetForm(int form, Prop prop);

  // -- Events.
  // Runs the handler of the control's event, if any; the form is loaded first.
  void Raise(ControlId id, Event event);
  void RaiseForm(int form, Event event);
  // Whether the form answers the control's event with a handler.
  bool Answers(ControlId id, Event event) const { return Handler(id.form, id.index, event) != nullptr; }
  // Whether a loaded form answers its own event with a handler.
  bool AnswersForm(int form, Event event) const {
    return Handler(form, static_cast<int>(forms_[form].controls.size()), event) != nullptr;
  }

  // -- Timers, for the event loop.
  double NextTimerDue() const;
  // Fires the earliest timer due at or before now; false when none is.
  bool FireDueTimer(double now);
  // The next tick of a timer that may still change something. A timer's
  // handler reads only the surface, so once a tick has changed nothing and
  // nothing has changed since, its next tick would change nothing either:
  // an event loop may sleep through it. Infinity when every timer is settled.
  double NextUnsettledTimerDue() const;

  // How many values have changed since the start: equal counts mean nothing changed between.
  long ChangeCount() const { return changes_; }

  void SetObserver(SurfaceObserver* observer) { observer_ = observer; }
  Program& program() { return program_; }

 private:
  void Load(int form);
  void Build(FormState& f);
  void Changed(ControlId id, Prop prop);
  void FormChanged(int form, Prop prop);
  const HandlerDecl* Handler(int form, int index, Event event) const;

  Program& program_;
  std::vector<FormState> forms_;
  std::unordered_map<std::string, int> formByName_;
  SurfaceObserver* observer_ = nullptr;
  long changes_ = 0;  // every change of a value, a form loaded or unloaded: timers settle against it
  static SurfaceObserver nullObserver_;
};

// Property names as scripts and bindings spell them; nullopt when unknown.
std::optional<Prop> PropFromName(std::string_view name);
const char* PropName(Prop prop);

}  // namespace fw
