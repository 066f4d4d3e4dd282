#pragma once
#include <QCursor>
#include <QObject>
#include <QString>

#include <map>
#include <set>
#include <vector>

#include "forms/surface.h"
#include "forms/user_actions.h"

class QMainWindow;
class QWidget;
class QAction;
class QKeyEvent;

namespace fw {

class Program;

// The desktop window: every form becomes a window and every control a widget,
// built from the form tables alone, so a new form needs no code here. It
// mirrors each change of the surface on screen and turns the user's clicks,
// typing and choices into the events of the surface.
class QtWindows : public QObject, public SurfaceObserver {
 public:
  explicit QtWindows(Program& program);
  ~QtWindows() override;

  void ControlChanged(ControlId id, Prop prop) override;
  void FormChanged(int form, Prop prop) override;
  void FormLoaded(int form) override;
  void FormUnloaded(int form) override;

  // The widget a control is drawn as (nullptr for none): the video goes into
  // the movie control's.
  QWidget* WidgetOf(ControlId id) const;
  QMainWindow* WindowOf(int form) const;
  // The window the player is in: the active one of the program's, else the
  // one shown last that is still on screen; nullptr when none is.
  QMainWindow* ActiveWindow() const;

  // Pixels for twips at 100%.
  static int Px(float twips) { return static_cast<int>(twips / 15.0f + 0.5f); }
  // Pixels for twips in a form's window at its zoom.
  int Px(int form, float twips) const;

  // The zoom a form's window is shown at (1 for 100%). It starts at the
  // largest step at which the window fits its screen with room to spare,
  // and no larger than that of the others, except one already on screen;
  // Ctrl+Plus and Ctrl+Minus step it, never past the largest step at which
  // the window fits the screen's available area (a step refused beeps and
  // says why), and Ctrl+0 goes back to that start. The program never hears
  // of it: it sees twips.
  double Zoom(int form) const;
  // Sets the zoom as given, whatever the screen.
  void SetZoom(int form, double zoom);
  // The zoom of the program's window that holds the widget, 1 for none: a
  // dialog opened over a window takes its zoom.
  static double ZoomOf(const QWidget* widget);

 private:
  struct FormWidgets {
    QMainWindow* window = nullptr;
    std::vector<QWidget*> widgets;   // by control index
    std::vector<QAction*> actions;   // menu items by control index
    double zoom = 1.0, fitZoom = 1.0;
    std::string background;  // the picture file the client shows, "" for none
  };
  // Building (qt_build.cpp): a window from its form's table, a widget from
  // its control's.
  void Build(int form);
  // Builds a loaded form's window that has not been made yet.
  void EnsureBuilt(int form) const;
  QMainWindow* MakeWindow(int form);
  QWidget* Make(ControlId id, QWidget* parent);
  QWidget* MakeArea(ControlId id, QWidget* parent);
  // What every control's widget gets, whatever its kind.
  void Finish(ControlId id, QWidget* w);
  void Connect(ControlId id, QWidget* widget);
  void BuildMenus(int form);

  // Mirroring (qt_mirror.cpp): the surface's values on screen.
  // Where a multi-line box's caret goes when its values are shown: to
  // SelStart when the logic set text or SelStart, nowhere new after typing.
  enum class Caret { Logic, SelStart, Typing };
  void Apply(ControlId id, Caret caret = Caret::Logic);
  void ApplyMenuItem(ControlId id, QAction* action);
  // Shows what the surface kept of the user's typing.
  void ShowTyped(ControlId id);
  void ApplyForm(int form);
  // The form's client height in twips.
  float ClientHeight(int form) const;

  // Zoom (qt_zoom.cpp).
  // The zoom a new window opens at, and the others' that have to follow it.
  void StartZoom(int form);
  bool PressZoomKey(int form, const QKeyEvent* e);
  // Whether the window at the zoom fits its screen's available area, with
  // its frame and menu bar.
  bool FitsScreen(int form, double zoom) const;
  // A step of the keys, and what is moved of the window to keep it on screen.
  void StepZoom(int form, double zoom);
  // A step the keys cannot take: a beep, and why beside the window.
  void RefuseZoom(int form, const QString& why);
  // Gives a control the table's font at its window's zoom.
  void ApplyFont(ControlId id);
  // The window's own parts at its zoom: the menu bar, its menus, and the
  // zoom noted on the window for the dialogs that open over it.
  void ZoomChrome(int form);

  // A key of the form's key table, pressed (see PressKey of the user's
  // actions), or a zoom key. True when the form has the key, taken or refused.
  bool PressKey(int form, const QKeyEvent* e);
  // A user's action on a control, unless the window is being set from the surface.
  void User(ControlId id, UserAction action, std::string_view text = {}, int value = 0);

  Program& program_;
  std::map<int, FormWidgets> forms_;
  std::set<int> pending_;        // loaded forms whose windows are not made yet
  std::vector<int> shownOrder_;  // forms, the one shown last at the back
  QCursor hand_;            // drawn once, shown by every control that points
  bool mirroring_ = false;  // the window is being set from the surface: no events back
};

}  // namespace fw
