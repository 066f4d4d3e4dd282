#pragma once
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "forms/surface.h"
#include "forms/user_actions.h"

namespace fw {

class Program;

// The forms in the page: every form becomes a window of the page and every
// control an element, built by the page's script from the description this
// gives of the form tables, so a new form needs no code here. It mirrors
// each change of the surface into the page and turns what the player does
// there into the surface's events. The program sees twips; the page scales
// them.
class WebWindows : public SurfaceObserver {
 public:
  explicit WebWindows(Program& program) : program_(program) {}

  void ControlChanged(ControlId id, Prop prop) override;
  void FormChanged(int form, Prop prop) override;
  void FormLoaded(int form) override;
  void FormUnloaded(int form) override;

  // Does one event of the page's ("act", "at", "key", "close"), as the
  // player's own; false for an event of another kind.
  bool Dispatch(const std::vector<std::string>& fields);
  // Tells the page which of its controls the player can reach (Tab skips
  // the others), where that changed.
  void SendReach();

 private:
  void Build(int form);
  std::string Describe(int form);
  std::string ControlState(ControlId id, bool withList);
  std::string FormState(int form);
  // A key of the form's key table, as the desktop's window presses it.
  void PressKey(int form, std::string_view key);

  Program& program_;
  std::set<int> built_, pending_;
  std::map<int, std::vector<int>> reach_;  // per form: -1 unknown, 0 no, 1 yes, by control
};

}  // namespace fw
