// The zoom of a form's window: the step it opens at, the keys that change
// it, and everything of the window that grows with it.
#include <QKeyEvent>
#include <QLayout>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QStyle>

#include <algorithm>
#include <iterator>

#include "bindings/qt/qt_look.h"
#include "bindings/qt/qt_window.h"
#include "forms/program.h"

namespace fw {
namespace {

// The zooms a window is shown at.
constexpr double kZooms[] = {1.0, 1.25, 1.5, 2.0, 2.5, 3.0, 4.0};

// The largest zoom at which a window of the client size (at 100%), with
// its frame and menu bar, fits the screen with a tenth of it to spare.
double FittingZoom(const QScreen* screen, QSize client, int menuBar) {
  if (!screen) return 1.0;
  constexpr int kFrame = 40;  // a title bar and borders, before the desktop tells
  QSize room = screen->availableGeometry().size() * 0.9;
  double best = kZooms[0];
  for (double zoom : kZooms)
    if (client.width() * zoom + kFrame <= room.width() &&
        (client.height() + menuBar) * zoom + kFrame <= room.height())
      best = zoom;
  return best;
}

// The height of a menu bar, for a window not made yet.
int MenuBarHeight() {
  QMenuBar probe;
  probe.addMenu("&File");
  return probe.sizeHint().height();
}

// The zoom a window carries, for dialogs that open over it.
constexpr char kZoomProperty[] = "fablewrightZoom";

}  // namespace

int QtWindows::Px(int form, float twips) const {
  auto it = forms_.find(form);
  double zoom = it == forms_.end() ? 1.0 : it->second.zoom;
  return static_cast<int>(twips / 15.0 * zoom + 0.5);
}

double QtWindows::Zoom(int form) const {
  auto it = forms_.find(form);
  return it == forms_.end() ? 1.0 : it->second.zoom;
}

void QtWindows::StartZoom(int form) {
  FormSurface& s = program_.surface();
  const FormDecl& t = s.Table(form);
  FormWidgets& fw = forms_[form];
  QMainWindow* window = fw.window;
  int menuBar = window->menuWidget() ? window->menuWidget()->sizeHint().height() : 0;
  fw.fitZoom = FittingZoom(window->screen(), QSize(Px(t.width), Px(t.height)), menuBar);
  // The program's windows look alike: a small one (the splash) opens no
  // larger than the others, though it would fit larger. One on screen
  // already keeps its zoom.
  for (const auto& [other, built] : forms_)
    if (other != form) fw.fitZoom = std::min(fw.fitZoom, built.fitZoom);
  for (int other : pending_) {
    const FormDecl& o = s.Table(other);
    bool menus = std::any_of(o.controls.begin(), o.controls.end(), [](const ControlDecl& d) { return d.kind == Kind::Menu; });
    fw.fitZoom = std::min(fw.fitZoom, FittingZoom(window->screen(), QSize(Px(o.width), Px(o.height)),
                                                  menus ? MenuBarHeight() : 0));
  }
  fw.zoom = fw.fitZoom;
  for (auto& [other, built] : forms_) {
    if (other == form || built.window->isVisible() || built.fitZoom <= fw.fitZoom) continue;
    bool atDefault = built.zoom == built.fitZoom;
    built.fitZoom = fw.fitZoom;
    if (atDefault) SetZoom(other, fw.fitZoom);
  }
}

void QtWindows::SetZoom(int form, double zoom) {
  auto it = forms_.find(form);
  if (it == forms_.end() || it->second.zoom == zoom) return;
  it->second.zoom = zoom;
  FormSurface& s = program_.surface();
  const FormDecl& t = s.Table(form);
  it->second.window->centralWidget()->setFont(ZoomedFont(FormFont(t.look.font), zoom));
  ZoomChrome(form);
  bool was = mirroring_;
  mirroring_ = true;
  for (int i = 0; i < static_cast<int>(t.controls.size()); ++i) {
    ApplyFont({form, i});
    Apply({form, i}, Caret::Typing);
  }
  mirroring_ = was;
  ApplyForm(form);
  it->second.window->layout()->activate();  // the window takes its new size now, not at the next event
}

void QtWindows::ZoomChrome(int form) {
  FormWidgets& fw = forms_[form];
  fw.window->setProperty(kZoomProperty, fw.zoom);
  // Asking a window for its menu bar would make one: a form without menus has none.
  auto* bar = qobject_cast<QMenuBar*>(fw.window->menuWidget());
  if (!bar) return;
  QFont font = ZoomedFont({}, fw.zoom);
  bar->setFont(font);
  // Menus open as windows of their own, which take no font from the bar.
  for (QMenu* menu : bar->findChildren<QMenu*>()) menu->setFont(font);
}

double QtWindows::ZoomOf(const QWidget* widget) {
  if (!widget) return 1.0;
  QVariant zoom = widget->window()->property(kZoomProperty);
  return zoom.isValid() ? zoom.toDouble() : 1.0;
}

bool QtWindows::PressZoomKey(int form, const QKeyEvent* e) {
  if (!(e->modifiers() & Qt::ControlModifier)) return false;
  const FormWidgets& fw = forms_[form];
  const double* step = std::find(std::begin(kZooms), std::end(kZooms), fw.zoom);
  switch (e->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      if (step + 1 < std::end(kZooms)) SetZoom(form, step[1]);
      return true;
    case Qt::Key_Minus:
      if (step != std::begin(kZooms)) SetZoom(form, step[-1]);
      return true;
    case Qt::Key_0: SetZoom(form, fw.fitZoom); return true;
    default: return false;
  }
}

void QtWindows::ApplyFont(ControlId id) {
  QWidget* w = WidgetOf(id);
  if (!w) return;
  const ControlDecl& d = program_.surface().Decl(id);
  double zoom = forms_[id.form].zoom;
  if (HasFont(d.look.font)) w->setFont(ZoomedFont(d.look.font, zoom));
  if (d.kind == Kind::OptionButton || d.kind == Kind::CheckBox) {
    // The round or square box grows with the text beside it.
    if (!w->property("tableSheet").isValid()) w->setProperty("tableSheet", w->styleSheet());
    QString sheet = w->property("tableSheet").toString();
    if (zoom != 1.0) {
      auto metric = d.kind == Kind::OptionButton ? QStyle::PM_ExclusiveIndicatorWidth : QStyle::PM_IndicatorWidth;
      int side = static_cast<int>(w->style()->pixelMetric(metric, nullptr, w) * zoom + 0.5);
      side = std::min(side, Px(id.form, program_.surface().At(id).height) - 2);  // within its line
      sheet += QString("#%1::indicator{width:%2px;height:%2px;}").arg(d.name).arg(side);
    }
    w->setStyleSheet(sheet);
  }
}

}  // namespace fw
