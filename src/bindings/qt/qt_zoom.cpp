// The zoom of a form's window: the step it opens at, the keys that change
// it, and everything of the window that grows with it.
#include <QApplication>
#include <QKeyEvent>
#include <QLayout>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QStyle>
#include <QToolTip>

#include <algorithm>
#include <cmath>
#include <iterator>

#include "bindings/qt/qt_look.h"
#include "bindings/qt/qt_widgets.h"
#include "bindings/qt/qt_window.h"
#include "forms/program.h"

namespace fw {
namespace {

// The zooms a window is shown at.
constexpr double kZooms[] = {1.0, 1.25, 1.5, 2.0, 2.5, 3.0, 4.0};

// A title bar and borders, before the desktop tells.
constexpr int kFrameGuess = 40;

// The largest zoom at which a window of the client size (at 100%), with
// its frame and menu bar, fits the screen with a tenth of it to spare.
double FittingZoom(const QScreen* screen, QSize client, int menuBar) {
  if (!screen) return 1.0;
  QSize room = screen->availableGeometry().size() * 0.9;
  double best = kZooms[0];
  for (double zoom : kZooms)
    if (client.width() * zoom + kFrameGuess <= room.width() &&
        (client.height() + menuBar) * zoom + kFrameGuess <= room.height())
      best = zoom;
  return best;
}

// What the window's frame adds to its size: as the desktop drew it, or a
// guess while it has not.
QSize FrameRoom(const QMainWindow* window, bool frameless) {
  QSize frame = window->frameGeometry().size() - window->geometry().size();
  if (window->isVisible() && frame != QSize(0, 0)) return frame;
  return frameless ? QSize(0, 0) : QSize(kFrameGuess, kFrameGuess);
}

// A window that a zoom has grown over an edge of its screen's available
// area moves back inside it.
void KeepOnScreen(QWidget* window) {
  QScreen* screen = window->screen();
  if (!screen || !window->isVisible()) return;
  QRect room = screen->availableGeometry(), frame = window->frameGeometry();
  int left = std::max(room.left(), std::min(frame.left(), room.right() + 1 - frame.width()));
  int top = std::max(room.top(), std::min(frame.top(), room.bottom() + 1 - frame.height()));
  if (left != frame.left() || top != frame.top()) window->move(left, top);
}

QString Percent(double zoom) { return QString::number(static_cast<int>(zoom * 100 + 0.5)) + "%"; }

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

bool QtWindows::FitsScreen(int form, double zoom) const {
  const FormWidgets& fw = forms_.at(form);
  QScreen* screen = fw.window->screen();
  if (!screen) return true;
  FormSurface& s = program_.surface();
  auto px = [zoom](float twips) { return static_cast<int>(twips / 15.0 * zoom + 0.5); };
  QSize size(px(s.Form(form).width), px(ClientHeight(form)));
  if (QWidget* bar = fw.window->menuWidget(); bar && bar->isVisibleTo(fw.window))
    size.rheight() += static_cast<int>(std::ceil(bar->sizeHint().height() * zoom / fw.zoom));
  size += FrameRoom(fw.window, s.Table(form).noBorder);
  QSize room = screen->availableGeometry().size();
  return size.width() <= room.width() && size.height() <= room.height();
}

bool QtWindows::PressZoomKey(int form, const QKeyEvent* e) {
  if (!(e->modifiers() & Qt::ControlModifier)) return false;
  const FormWidgets& fw = forms_[form];
  const double* larger = std::upper_bound(std::begin(kZooms), std::end(kZooms), fw.zoom);
  const double* smaller = std::lower_bound(std::begin(kZooms), std::end(kZooms), fw.zoom);
  switch (e->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      if (larger == std::end(kZooms)) RefuseZoom(form, Percent(fw.zoom) + " is the largest zoom.");
      else if (!FitsScreen(form, *larger)) RefuseZoom(form, "A larger zoom would not fit on the screen.");
      else StepZoom(form, *larger);
      return true;
    case Qt::Key_Minus:
      if (smaller == std::begin(kZooms)) RefuseZoom(form, Percent(fw.zoom) + " is the smallest zoom.");
      else StepZoom(form, smaller[-1]);
      return true;
    case Qt::Key_0: StepZoom(form, fw.fitZoom); return true;
    default: return false;
  }
}

void QtWindows::StepZoom(int form, double zoom) {
  SetZoom(form, zoom);
  KeepOnScreen(forms_[form].window);
}

void QtWindows::RefuseZoom(int form, const QString& why) {
  QApplication::beep();
  QWidget* client = forms_[form].window->centralWidget();
  QToolTip::showText(client->mapToGlobal(QPoint(client->width() / 2, 0)), why, client);
}

void QtWindows::ApplyFont(ControlId id) {
  QWidget* w = WidgetOf(id);
  if (!w) return;
  FormSurface& s = program_.surface();
  const ControlDecl& d = s.Decl(id);
  const FormWidgets& fw = forms_[id.form];
  // Every control is given its font, the table's or else its form's: a
  // font taken from the window stops following it once a style sheet has
  // polished the control, and keeps its first size at every zoom.
  w->setFont(ZoomedFont(HasFont(d.look.font) ? d.look.font : FormFont(s.Table(id.form).look.font), fw.zoom));
  if (d.kind != Kind::OptionButton && d.kind != Kind::CheckBox) return;
  // The round or square box grows with the text beside it, and an option's
  // key cap goes before both.
  if (!w->property("tableSheet").isValid()) w->setProperty("tableSheet", w->styleSheet());
  QString sheet = w->property("tableSheet").toString();
  int line = Px(id.form, s.At(id).height);
  if (fw.zoom != 1.0) {
    auto metric = d.kind == Kind::OptionButton ? QStyle::PM_ExclusiveIndicatorWidth : QStyle::PM_IndicatorWidth;
    int side = static_cast<int>(w->style()->pixelMetric(metric, nullptr, w) * fw.zoom + 0.5);
    side = std::min(side, line - 2);  // within its line
    sheet += QString("#%1::indicator{width:%2px;height:%2px;}").arg(d.name).arg(side);
  }
  if (auto* option = dynamic_cast<OptionRow*>(w); option && option->KeyRoom(line) > 0)
    sheet += QString("#%1{padding-left:%2px;}").arg(d.name).arg(option->KeyRoom(line));
  w->setStyleSheet(sheet);
}

}  // namespace fw
