// Mirroring the surface on screen: each change of a control's or a form's
// values is shown on its widget, one function for each kind of widget.
#include <QAction>
#include <QCheckBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>

#include <algorithm>

#include "bindings/qt/qt_look.h"
#include "bindings/qt/qt_widgets.h"
#include "bindings/qt/qt_window.h"
#include "forms/program.h"

namespace fw {
namespace {

// What a screen reader calls a control: its caption, or its hover text where
// the caption is the control's value (a text box's text) or there is none.
QString AccessibleName(const ControlDecl& d, const std::string& caption) {
  bool captionIsValue = d.kind == Kind::TextBox || d.kind == Kind::ListBox;
  if (!captionIsValue && !caption.empty()) return Plain(caption);
  return Q(d.toolTip);
}

// A scrolling container's inside reaches as far as its children do, so its
// scroll bars follow a picture that grows or shrinks.
void FitInside(QWidget* inside) {
  QWidget* viewport = inside ? inside->parentWidget() : nullptr;
  auto* scroll = viewport ? qobject_cast<QScrollArea*>(viewport->parentWidget()) : nullptr;
  if (!scroll || scroll->widget() != inside) return;
  QRect reach;
  for (QObject* child : inside->children())
    if (auto* w = qobject_cast<QWidget*>(child); w && !w->isHidden()) reach |= w->geometry();
  inside->setFixedSize(std::max(0, reach.right() + 1), std::max(0, reach.bottom() + 1));
}

// A caption too wide for its button goes on two lines where the button is
// tall enough for them, broken at the blank nearest its middle, as a
// button of the forms' own toolkit wraps its caption.
QString ButtonText(const QPushButton* button, const ControlDecl& d, QString text) {
  constexpr int kPadding = 6;
  if (!HoldsTwoLines(d) || button->fontMetrics().horizontalAdvance(text) <= button->width() - kPadding) return text;
  int middle = static_cast<int>(text.size()) / 2, best = -1;
  for (int i = 0; i < text.size(); ++i)
    if (text[i] == ' ' && (best < 0 || std::abs(i - middle) < std::abs(best - middle))) best = i;
  if (best >= 0) text[best] = '\n';
  return text;
}

// Brings a list widget to the surface's entries. The window hears of every
// change, and a list changes only by one entry appended, one taken out, or
// all cleared, so the widget is one step behind at most: a long page list
// is never rebuilt whole for one entry.
void MirrorEntries(QListWidget* list, const std::vector<std::string>& entries) {
  int n = static_cast<int>(entries.size());
  if (list->count() < n) {
    for (int i = list->count(); i < n; ++i) list->addItem(Q(entries[i]));
  } else if (list->count() == n + 1 && n > 0) {
    // The entry taken out: the first from the end whose followers all moved
    // up one place. Of equal neighbours either gives the same list.
    int gone = n;
    while (gone > 0 && list->item(gone)->text() == Q(entries[gone - 1])) --gone;
    delete list->takeItem(gone);
  } else if (list->count() != n) {
    list->clear();
    for (const std::string& entry : entries) list->addItem(Q(entry));
  }
}

void ApplyArea(Area* area, const Control& c) {
  area->ShowPicture(QString::fromStdString(c.picture.host));
  if (c.picture.host.empty() && c.decl->kind == Kind::Label) area->setText(Plain(c.caption));
}

void ApplyLine(QLineEdit* line, const Control& c) {
  if (FromQ(line->text()) != c.caption) line->setText(Q(c.caption));
}

// The logic places the caret through SelStart, and a text it sets starts
// there too; typing leaves the caret where the user's keys put it.
void ApplyTextBox(QPlainTextEdit* box, const Control& c, bool typing, bool selStart) {
  QString text = Q(c.caption).replace("\r\n", "\n");
  int typedAt = box->textCursor().position();
  bool replaced = box->toPlainText() != text;
  if (replaced) box->setPlainText(text);
  if (typing) {
    if (replaced) {
      QTextCursor cursor = box->textCursor();
      cursor.setPosition(std::min(typedAt, static_cast<int>(text.size())));
      box->setTextCursor(cursor);
    }
  } else if (replaced || selStart) {
    QTextCursor cursor = box->textCursor();
    cursor.setPosition(std::min(c.selStart, static_cast<int>(box->toPlainText().size())));
    box->setTextCursor(cursor);
    box->ensureCursorVisible();
  }
}

void ApplyButton(QPushButton* button, const Control& c) { button->setText(ButtonText(button, *c.decl, Q(c.caption))); }

void ApplyFrame(QGroupBox* group, const Control& c) { group->setTitle(Q(c.caption)); }

void ApplyCheckBox(QCheckBox* check, const Control& c) {
  check->setText(Q(c.caption));
  check->setChecked(c.checkValue == 1);
}

void ApplyOption(QRadioButton* option, const Control& c) {
  option->setText(Q(c.caption));
  option->setChecked(c.optionValue);
}

void ApplyList(QListWidget* list, const Control& c) {
  MirrorEntries(list, c.list);
  list->setCurrentRow(c.listIndex);
}

void ApplyBar(QProgressBar* bar, const Control& c) {
  bar->setRange(0, 1000);
  bar->setValue(c.barMax > 0 ? static_cast<int>(1000 * c.barValue / c.barMax) : 0);
}

}  // namespace

void QtWindows::ControlChanged(ControlId id, Prop prop) {
  if (!forms_.count(id.form)) return;
  bool was = mirroring_;
  mirroring_ = true;
  if (prop == Prop::Picture)
    if (auto* area = dynamic_cast<Area*>(forms_[id.form].widgets[id.index])) area->ForgetPicture();
  Apply(id, prop == Prop::SelStart ? Caret::SelStart : Caret::Logic);
  mirroring_ = was;
}

void QtWindows::ShowTyped(ControlId id) {
  // What the box kept of the typing (a text past its limit is cut) may
  // differ from what the widget shows; the caret stays where it was.
  if (!forms_.count(id.form) || !program_.surface().IsLoaded(id.form)) return;
  bool was = mirroring_;
  mirroring_ = true;
  Apply(id, Caret::Typing);
  mirroring_ = was;
}

void QtWindows::FormChanged(int form, Prop) {
  if (forms_.count(form)) ApplyForm(form);
  else if (pending_.count(form) && program_.surface().Form(form).visible) Build(form);
}

// A form's table gives its client area. A Height the program sets later is
// the whole window's, as the platform the forms were drawn for measured it:
// its title bar and borders (405 twips there) and its menu bar included. So
// a game that hides its menu bar and sets the height it had keeps its
// client area, with nothing showing below the game screen.
float QtWindows::ClientHeight(int form) const {
  constexpr float kTitleAndBorders = 405;
  FormSurface& s = program_.surface();
  const FormState& f = s.Form(form);
  if (f.height == s.Table(form).height) return f.height;
  float menuBar = 0;
  const FormWidgets& fw = forms_.at(form);
  if (QWidget* bar = fw.window->menuWidget(); bar && bar->isVisibleTo(fw.window))
    menuBar = static_cast<float>(bar->sizeHint().height() * 15.0 / fw.zoom);
  return std::max(0.0f, f.height - kTitleAndBorders - menuBar);
}

void QtWindows::ApplyForm(int form) {
  FormSurface& s = program_.surface();
  FormState& f = s.Form(form);
  QMainWindow* window = forms_[form].window;
  window->setWindowTitle(Q(f.caption));
  window->centralWidget()->setFixedSize(Px(form, f.width), Px(form, ClientHeight(form)));
  if (auto* client = dynamic_cast<Area*>(window->centralWidget())) client->hasPicture = !f.picture.host.empty();
  if (std::string& shown = forms_[form].background; shown != f.picture.host) {
    // Set only on a change: a new style sheet polishes every widget of the
    // window again, and the window hears of every change of the form.
    shown = f.picture.host;
    window->centralWidget()->setObjectName("client");
    window->centralWidget()->setStyleSheet(
        shown.empty() ? QString()
                      : QString("QWidget#client{border-image:url(%1);}").arg(QString::fromStdString(shown)));
  }
  if (f.visible && !window->isVisible() && s.Table(form).centred) {
    // A centred form stands in the middle of the screen it opens on.
    window->adjustSize();
    if (QScreen* screen = window->screen()) window->move(screen->availableGeometry().center() - window->rect().center());
  }
  if (f.visible && !window->isVisible()) {
    std::erase(shownOrder_, form);
    shownOrder_.push_back(form);
  }
  window->setVisible(f.visible);
}

void QtWindows::Apply(ControlId id, Caret caret) {
  FormWidgets& fw = forms_[id.form];
  const Control& c = program_.surface().At(id);
  if (QAction* action = fw.actions[id.index]) return ApplyMenuItem(id, action);
  QWidget* w = fw.widgets[id.index];
  if (!w) return;
  int form = id.form;
  w->setGeometry(Px(form, c.left), Px(form, c.top), Px(form, c.width), Px(form, c.height));
  w->setVisible(c.visible);
  FitInside(w->parentWidget());
  w->setEnabled(c.enabled);
  // Set only on a change: each setting tells a listening screen reader, and
  // the timers write some controls many times a second.
  if (QString name = AccessibleName(*c.decl, c.caption); w->accessibleName() != name) w->setAccessibleName(name);
  if (auto* area = dynamic_cast<Area*>(w)) ApplyArea(area, c);
  else if (auto* line = qobject_cast<QLineEdit*>(w)) ApplyLine(line, c);
  else if (auto* box = qobject_cast<QPlainTextEdit*>(w)) ApplyTextBox(box, c, caret == Caret::Typing, caret == Caret::SelStart);
  else if (auto* button = qobject_cast<QPushButton*>(w)) ApplyButton(button, c);
  else if (auto* group = qobject_cast<QGroupBox*>(w)) ApplyFrame(group, c);
  else if (auto* check = qobject_cast<QCheckBox*>(w)) ApplyCheckBox(check, c);
  else if (auto* option = qobject_cast<QRadioButton*>(w)) ApplyOption(option, c);
  else if (auto* dirs = dynamic_cast<DirList*>(w)) dirs->ShowFolder(QString::fromStdString(program_.HostFile(c.caption)));
  else if (auto* list = qobject_cast<QListWidget*>(w)) ApplyList(list, c);
  else if (auto* bar = qobject_cast<QProgressBar*>(w)) ApplyBar(bar, c);
}

void QtWindows::ApplyMenuItem(ControlId id, QAction* action) {
  FormWidgets& fw = forms_[id.form];
  const Control& c = program_.surface().At(id);
  action->setVisible(c.visible);
  action->setEnabled(c.enabled);
  action->setText(Q(c.caption));
  auto* bar = qobject_cast<QMenuBar*>(fw.window->menuWidget());
  if (!bar) return;
  // A bar whose menus are all hidden (a packaged game's) takes no room, so
  // that the window is the form's own size and nothing shows below it.
  const QList<QAction*> menus = bar->actions();
  bool any = std::any_of(menus.begin(), menus.end(), [](QAction* a) { return a->isVisible(); });
  if (bar->isVisibleTo(fw.window) != any) {
    bar->setVisible(any);
    ApplyForm(id.form);
  }
}

}  // namespace fw
