#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "forms/surface.h"

namespace fw {

class Program;

// What a user can do to a control, the same in every binding: a click in the
// window, a command typed in the terminal, a line of a test script.
enum class UserAction {
  Click,   // a label, button, check box, list, picture, image or menu item
  Select,  // an option button
  Type,    // replaces the text of a text box that can be edited; moves a directory list to a folder
  Check,   // sets a check box to 0 or 1
  Choose,  // selects a list's entry by index
  Hover,   // the mouse moves over the control
};

// Why the user cannot do the action to the control: "" when they can,
// otherwise a reason to finish the control's name ("is covered by InvBox",
// "is a Timer, which does not take that action").
std::string CannotAct(FormSurface& s, ControlId id, UserAction action);

// What a text box keeps of a text the user puts in: no more than its
// MaxLength characters, as the box cuts a paste or a key past its limit. A
// handler's own assignment is never cut.
std::string_view WithinMaxLength(const ControlDecl& box, std::string_view text);

// Does the action as the user does it, as one event of the program (End and
// an unhandled failure stop there). text is what Type types, cut to the box's
// MaxLength; value is the check value of Check and the entry of Choose. Gives
// CannotAct's reason and does nothing when the user cannot do it, or when the
// value is out of range.
std::string Act(Program& p, ControlId id, UserAction action, std::string_view text = {}, int value = 0);

// A click at a point of a picture box or image, in twips from its top left
// corner, as the mouse gives it; refused as Click is, and when the point lies
// outside the control.
std::string ClickAt(Program& p, ControlId id, float x, float y);

// The key of the form's key table that stands for the control ("1" for the
// game window's Option1; the first, where several do), nullptr where none
// does: what a window shows beside the control, and what the terminal
// numbers it by.
const char* KeyOf(const FormDecl& form, std::string_view control);

// The controls a key of the form's key table stands for, in the table's
// order; none for a key the form does not have. Letter case does not count.
std::vector<ControlId> KeyControls(FormSurface& s, int form, std::string_view key);

// The user presses a key of the form's key table: the first of the controls
// it stands for that can take it does what a click on it does (on an option
// button, a selection). Gives "" when one did, else why none did, to follow
// the form's name: "has no key K", or "cannot take key K: " and why the
// first of its controls could not ("Option1 is hidden").
std::string PressKey(Program& p, int form, std::string_view key);

// The user closes a form's window: refused ("is not open") unless it is
// loaded and visible.
std::string CloseForm(Program& p, int form);

// A key or a click on a form's window that no control of it takes (a click
// on its own ground, a key its key table does not name): raises the form's
// own Click. Refused ("is not open") unless the form is loaded and visible,
// and ("takes no click") when the form has no Click of its own, so that a
// binding leaves the key to the toolkit.
std::string ClickForm(Program& p, int form);

}  // namespace fw
