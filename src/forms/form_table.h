#pragma once
#include <cstdint>
#include <span>

namespace fw {

class Program;

// The kinds of control a form is made of.
enum class Kind {
  Label,
  TextBox,
  CommandButton,
  CheckBox,
  OptionButton,
  ListBox,
  PictureBox,
  Image,
  Timer,
  Menu,
  DirListBox,
  ProgressBar,
  FileDialog,
  MediaPlayer,
  Shape,
  Frame,  // a captioned box that holds other controls
};

const char* KindName(Kind kind);

// The events a handler can answer.
enum class Event { Click, Change, MouseMove, Timer, Load, Resize, QueryUnload };
inline constexpr int kEventCount = 7;

const char* EventName(Event event);

// Whether a control of this kind raises the event.
bool KindRaises(Kind kind, Event event);

// A colour as red, green, blue; kDefaultColor leaves the toolkit's own.
inline constexpr std::int32_t kDefaultColor = -1;
constexpr std::int32_t Rgb(int r, int g, int b) { return r | (g << 8) | (b << 16); }

struct Font {
  const char* name = nullptr;  // nullptr: the form's font
  float points = 0;
  bool bold = false;
};

// How a control looks; no logic reads it.
struct Look {
  std::int32_t foreColor = kDefaultColor;
  std::int32_t backColor = kDefaultColor;
  bool transparent = false;  // a label drawn without its background
  Font font{};
  bool multiLine = false;
  bool scrollBar = false;  // a vertical scroll bar
  bool readOnly = false;   // the user cannot type in it
  bool handCursor = false;
  const char* art = nullptr;  // the artwork file drawn on it, under the art folder
  int borderWidth = 0;        // a shape's outline
};

// One control of a form table. Positions and sizes are in twips, relative to
// the parent container. Controls stack in table order: a later one lies above
// an earlier one of the same parent.
struct ControlDecl {
  const char* name;
  Kind kind;
  const char* parent = "";  // a container control or a menu; "" is the form itself
  float left = 0, top = 0, width = 0, height = 0;
  const char* caption = "";  // Caption, or Text of a text box
  bool visible = true;
  bool enabled = true;  // for a timer: running at start
  Look look{};
  int interval = 0;               // a timer's interval in ms
  const char* filter = "";        // a file dialog's filter
  const char* defaultExt = "";    // a file dialog's default extension
  int maxLength = 0;              // a text box's MaxLength: the most characters a user puts in; 0 for no limit
  std::span<const char* const> items{};  // a list box's entries at start
  const char* toolTip = "";       // the hover text the window shows; no logic reads it
  int value = 0;                  // a check box's Value at start
  const char* shortcut = "";      // a menu item's key, as a toolkit spells it ("Ctrl+Z"); no logic reads it
};

// A key of the keyboard that stands for a control: pressing it does to the
// control what a click (or, on an option button, a selection) does, and is
// refused as that would be. Several entries of one key are tried in order,
// and the first control that can take it does. key is a key's name as a
// toolkit spells it ("1", "Return", "Escape", "I").
struct KeyDecl {
  const char* key;
  const char* control;
};

// One form: its design-time values and its controls.
struct FormDecl {
  const char* name;
  const char* caption;
  float width, height;  // the client area in twips
  std::span<const ControlDecl> controls;
  Look look{};
  bool fixedBorder = false;   // no resize, no maximize or minimize button
  bool noBorder = false;      // no frame and no caption at all
  bool noMaximize = false;
  bool centred = false;
  std::span<const KeyDecl> keys{};  // the form's keys for play without a mouse
  // The form this one is opened from, whose window it belongs to: it stays
  // above that one and goes with it. "" for the start-up form and the game
  // window, which belong to none.
  const char* owner = "";
};

// A handler: a plain function named after its control and event. A form's own
// events use the control name "Form".
using PlainHandler = void (*)(Program&);
using UnloadHandler = void (*)(Program&, bool& cancel);

struct HandlerDecl {
  const char* control;
  Event event;
  PlainHandler plain = nullptr;
  UnloadHandler unload = nullptr;

  constexpr HandlerDecl(const char* c, Event e, PlainHandler h) : control(c), event(e), plain(h) {}
  constexpr HandlerDecl(const char* c, Event e, UnloadHandler h) : control(c), event(e), unload(h) {}
};

// A form as the program knows it: its table and its handlers.
struct FormDef {
  const FormDecl* table;
  std::span<const HandlerDecl> handlers;
};

}  // namespace fw
