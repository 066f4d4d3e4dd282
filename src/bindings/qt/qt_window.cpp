// The window's core: which widget and window stand for what, the forms'
// windows coming and going, and the keys of a form's key table. Building,
// mirroring and zoom have files of their own.
#include "bindings/qt/qt_window.h"

#include <QApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMainWindow>

#include <algorithm>

#include "bindings/qt/qt_art.h"
#include "forms/program.h"
#include "forms/user_actions.h"

namespace fw {

QtWindows::QtWindows(Program& program) : program_(program), hand_(HandCursor()) {
  SubstituteFonts();
  QGuiApplication::setWindowIcon(AppIcon());
}

QtWindows::~QtWindows() {
  // A window that belongs to another goes with that one.
  std::vector<QMainWindow*> own;
  for (auto& [form, w] : forms_)
    if (!w.window->parentWidget()) own.push_back(w.window);
  for (QMainWindow* window : own) delete window;
}

void QtWindows::EnsureBuilt(int form) const {
  if (pending_.count(form) && program_.surface().IsLoaded(form)) const_cast<QtWindows*>(this)->Build(form);
}

QWidget* QtWindows::WidgetOf(ControlId id) const {
  EnsureBuilt(id.form);
  auto it = forms_.find(id.form);
  if (it == forms_.end() || id.index < 0 || id.index >= static_cast<int>(it->second.widgets.size())) return nullptr;
  return it->second.widgets[id.index];
}

QMainWindow* QtWindows::WindowOf(int form) const {
  EnsureBuilt(form);
  auto it = forms_.find(form);
  return it == forms_.end() ? nullptr : it->second.window;
}

QMainWindow* QtWindows::ActiveWindow() const {
  QWidget* active = QApplication::activeWindow();
  for (const auto& [form, w] : forms_)
    if (w.window == active && active->isVisible()) return w.window;
  for (auto it = shownOrder_.rbegin(); it != shownOrder_.rend(); ++it)
    if (QMainWindow* window = WindowOf(*it); window && window->isVisible()) return window;
  return nullptr;
}

void QtWindows::User(ControlId id, UserAction action, std::string_view text, int value) {
  if (!mirroring_) Act(program_, id, action, text, value);
}

// A form's window is made when it first shows, or when something asks for
// it: a form that loads hidden (the game window, during the splash) costs
// the start nothing before the first frame.
void QtWindows::FormLoaded(int form) { pending_.insert(form); }

void QtWindows::FormUnloaded(int form) {
  pending_.erase(form);
  auto it = forms_.find(form);
  if (it == forms_.end()) return;
  QMainWindow* gone = it->second.window;
  // The windows that belonged to it stay, on their own.
  for (auto& [other, w] : forms_) {
    if (w.window->parentWidget() != gone) continue;
    bool shown = w.window->isVisible();
    w.window->setParent(nullptr, w.window->windowFlags());
    w.window->setVisible(shown);
  }
  gone->hide();
  gone->deleteLater();
  forms_.erase(it);
  std::erase(shownOrder_, form);
}

bool QtWindows::PressKey(int form, const QKeyEvent* e) {
  if (PressZoomKey(form, e)) return true;
  if (e->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) return false;
  // The table names its keys as the toolkit spells them; what a key does is
  // the program's to say.
  for (const KeyDecl& k : program_.surface().Table(form).keys) {
    if (QKeySequence(QString(k.key))[0].key() != e->key()) continue;
    if (!mirroring_) fw::PressKey(program_, form, k.key);
    return true;
  }
  // A key no control takes is the form's own (it cuts the splash short).
  return !mirroring_ && ClickForm(program_, form).empty();
}

}  // namespace fw
