// Building a form's window from its table: one widget for each control, by a
// small factory for its kind, and what every widget gets after that.
#include <QCheckBox>
#include <QGroupBox>
#include <QKeySequence>
#include <QLayout>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>

#include <algorithm>

#include "bindings/qt/qt_look.h"
#include "bindings/qt/qt_widgets.h"
#include "bindings/qt/qt_window.h"
#include "forms/codepage.h"
#include "forms/program.h"

namespace fw {
namespace {

// What a container's children are placed in: the inside of a scrolling one.
QWidget* Inside(QWidget* container) {
  auto* scroll = qobject_cast<QScrollArea*>(container);
  return scroll ? scroll->widget() : container;
}

// Whether other controls lie inside this one.
bool HoldsControls(const FormDecl& t, const ControlDecl& d) {
  for (const ControlDecl& c : t.controls)
    if (std::string_view(c.parent) == d.name) return true;
  return false;
}

// Whether any menu item lies below the menu.
bool HasItems(const FormDecl& t, std::string_view menu) {
  return std::any_of(t.controls.begin(), t.controls.end(),
                     [&](const ControlDecl& d) { return d.kind == Kind::Menu && menu == d.parent; });
}

// The factories of the kinds whose widgets answer nothing of their own: the
// toolkit's signals reach the program through Connect.

// A picture box with a scroll bar: a view on a larger picture, whose
// children scroll inside it.
QWidget* MakeScroll(const ControlDecl& d, QWidget* parent) {
  auto* scroll = new QScrollArea(parent);
  auto* inside = new QWidget;
  scroll->setWidget(inside);
  scroll->setWidgetResizable(false);
  if (QColor fill = BackColor(d.look); fill.isValid()) {
    // Through the palette: a style sheet would reach the scroll bars too.
    for (QWidget* back : {scroll->viewport(), inside}) {
      QPalette palette = back->palette();
      palette.setColor(QPalette::Window, fill);
      back->setPalette(palette);
      back->setAutoFillBackground(true);
    }
  }
  return scroll;
}

QWidget* MakeTextBox(const ControlDecl& d, QWidget* parent) {
  QWidget* w;
  if (d.look.multiLine) {
    auto* box = new QPlainTextEdit(parent);
    box->setReadOnly(d.look.readOnly);
    // Lines wrap at the box's edge; only a box with a scroll bar shows one,
    // so a small box keeps its room for the text.
    box->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    if (!d.look.scrollBar) {
      box->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
      box->document()->setDocumentMargin(1);
    }
    w = box;
  } else {
    auto* line = new QLineEdit(parent);
    line->setReadOnly(d.look.readOnly);
    if (d.maxLength > 0) line->setMaxLength(d.maxLength);
    w = line;
  }
  w->setStyleSheet(Css(d.look));
  return w;
}

QWidget* MakeButton(const ControlDecl&, QWidget* parent) {
  auto* button = new Button(parent);
  button->setAutoDefault(true);  // Enter presses the button that has the focus
  return button;
}

QWidget* MakeCheckBox(const ControlDecl& d, QWidget* parent) {
  auto* check = new QCheckBox(parent);
  check->setStyleSheet(Css(d.look));
  return check;
}

QWidget* MakeOption(const ControlDecl& d, QWidget* parent) {
  auto* option = new OptionRow(parent);
  option->setAutoExclusive(false);  // the surface keeps one selected
  option->setStyleSheet(Css(d.look));
  return option;
}

QWidget* MakeList(const ControlDecl& d, QWidget* parent) {
  auto* list = new QListWidget(parent);
  list->setStyleSheet(Css(d.look));
  return list;
}

QWidget* MakeBar(const ControlDecl&, QWidget* parent) {
  auto* bar = new QProgressBar(parent);
  bar->setTextVisible(false);
  return bar;
}

// A movie's screen; a sound player has no face.
QWidget* MakePlayer(const ControlDecl& d, QWidget* parent) {
  if (std::string_view(d.parent).empty()) return nullptr;
  auto* screen = new QWidget(parent);
  screen->setStyleSheet("background-color:black;");
  return screen;
}

// The caption sits on the frame's top line, and the controls inside keep
// their places from the frame's corner.
QWidget* MakeFrame(const ControlDecl& d, QWidget* parent) {
  auto* group = new QGroupBox(parent);
  QString ink = ColorCss(d.look.foreColor == kDefaultColor ? 0 : d.look.foreColor);
  group->setStyleSheet(QString("QGroupBox#%1{color:%2;border:1px solid %2;border-radius:3px;margin-top:7px;}"
                               "QGroupBox#%1::title{subcontrol-origin:margin;left:8px;padding:0 3px;}")
                           .arg(d.name, ink));
  return group;
}

QWidget* MakeShape(const ControlDecl& d, QWidget* parent) {
  auto* frame = new QFrame(parent);
  frame->setStyleSheet(QString("border:%1px solid %2;background:transparent;")
                           .arg(d.look.borderWidth)
                           .arg(ColorCss(d.look.foreColor == kDefaultColor ? 0 : d.look.foreColor)));
  return frame;
}

QWidget* MakeDirList(const ControlDecl& d, QWidget* parent) {
  auto* dirs = new DirList(parent);
  dirs->setStyleSheet(Css(d.look));
  return dirs;
}

using Factory = QWidget* (*)(const ControlDecl&, QWidget*);

// The factory of a kind that is not an area; nullptr for a kind with no
// widget (a timer, a dialog, a menu item).
Factory FactoryOf(const ControlDecl& d) {
  switch (d.kind) {
    case Kind::PictureBox: return d.look.scrollBar ? MakeScroll : nullptr;
    case Kind::TextBox: return MakeTextBox;
    case Kind::CommandButton: return MakeButton;
    case Kind::CheckBox: return MakeCheckBox;
    case Kind::OptionButton: return MakeOption;
    case Kind::ListBox: return MakeList;
    case Kind::ProgressBar: return MakeBar;
    case Kind::MediaPlayer: return MakePlayer;
    case Kind::Frame: return MakeFrame;
    case Kind::Shape: return MakeShape;
    case Kind::DirListBox: return MakeDirList;
    default: return nullptr;
  }
}

// Labels, images and picture boxes without a scroll bar are areas.
bool IsArea(const ControlDecl& d) {
  return d.kind == Kind::Label || d.kind == Kind::Image || (d.kind == Kind::PictureBox && !d.look.scrollBar);
}

}  // namespace

void QtWindows::Build(int form) {
  pending_.erase(form);
  if (forms_.count(form)) return;
  FormSurface& s = program_.surface();
  const FormDecl& t = s.Table(form);
  QMainWindow* window = MakeWindow(form);
  FormWidgets& fw = forms_[form];
  fw.window = window;
  fw.widgets.assign(t.controls.size(), nullptr);
  fw.actions.assign(t.controls.size(), nullptr);
  // Parents come before their children in a table, and later controls stack
  // above earlier ones, so building in order gives both.
  for (int i = 0; i < static_cast<int>(t.controls.size()); ++i) {
    ControlId id{form, i};
    const Control& c = s.At(id);
    QWidget* parent = c.parent >= 0 ? Inside(fw.widgets[c.parent]) : window->centralWidget();
    if (!parent) continue;
    fw.widgets[i] = Make(id, parent);
    if (fw.widgets[i]) fw.widgets[i]->raise();
  }
  BuildMenus(form);
  StartZoom(form);
  window->centralWidget()->setFont(ZoomedFont(FormFont(t.look.font), fw.zoom));
  ZoomChrome(form);
  for (int i = 0; i < static_cast<int>(t.controls.size()); ++i) ApplyFont({form, i});
  mirroring_ = true;
  for (int i = 0; i < static_cast<int>(t.controls.size()); ++i) Apply({form, i});
  mirroring_ = false;
  ApplyForm(form);
}

QMainWindow* QtWindows::MakeWindow(int form) {
  FormSurface& s = program_.surface();
  const FormDecl& t = s.Table(form);
  // A window belongs to the one it is opened from, when that one is on
  // screen: it stays above it and goes with it. The editor opened straight
  // from the command line belongs to no window.
  auto owner = forms_.find(*t.owner ? s.FindForm(t.owner) : -1);
  bool owned = owner != forms_.end() && owner->second.window->isVisible();
  auto* window = new FormWindow(owned ? owner->second.window : nullptr);
  window->onClose = [this, form] {
    if (!mirroring_) CloseForm(program_, form);
  };
  window->onKey = [this, form](const QKeyEvent* e) { return PressKey(form, e); };
  window->reachable = [this, form](QWidget* w) {
    const std::vector<QWidget*>& widgets = forms_[form].widgets;
    auto it = std::find(widgets.begin(), widgets.end(), w);
    if (it == widgets.end()) return true;  // not a control's own widget: the toolkit's
    return program_.surface().Unreachable({form, static_cast<int>(it - widgets.begin())}).empty();
  };
  window->onResize = [this, form] {
    FormSurface& s = program_.surface();
    if (s.IsLoaded(form)) program_.RunEvent([&] { s.RaiseForm(form, Event::Resize); });
  };
  auto* client = new Area;
  client->fill = BackColor(t.look);
  client->art = t.look.art;
  client->onClick = [this, form] {
    if (!mirroring_) ClickForm(program_, form);
  };
  if (t.look.handCursor) client->setCursor(hand_);
  window->setCentralWidget(client);
  // The window is the form's size in twips at its zoom, and the user resizes
  // it only through the zoom.
  window->layout()->setSizeConstraint(QLayout::SetFixedSize);
  if (t.noMaximize || t.fixedBorder) window->setWindowFlag(Qt::WindowMaximizeButtonHint, false);
  if (t.fixedBorder) window->setWindowFlag(Qt::WindowMinimizeButtonHint, false);
  if (t.noBorder) window->setWindowFlag(Qt::FramelessWindowHint, true);
  return window;
}

QWidget* QtWindows::Make(ControlId id, QWidget* parent) {
  const ControlDecl& d = program_.surface().Decl(id);
  QWidget* w = nullptr;
  if (IsArea(d)) w = MakeArea(id, parent);
  else if (Factory factory = FactoryOf(d)) w = factory(d, parent);
  if (w) Finish(id, w);
  return w;
}

QWidget* QtWindows::MakeArea(ControlId id, QWidget* parent) {
  const ControlDecl& d = program_.surface().Decl(id);
  auto* area = new Area(parent);
  area->setMouseTracking(true);
  if (d.kind == Kind::Label) area->setWordWrap(HoldsTwoLines(d));
  if (d.look.handCursor) area->setCursor(hand_);
  // A label's drawing lies under its text, which keeps its own look; any
  // other control's drawing is all of its look.
  area->art = d.look.art;
  if (d.kind == Kind::Image && d.look.transparent && !d.look.art) {
    // A hot zone on a picture: the picture shows what it is, and a soft
    // lamplight under the mouse shows that it can be clicked.
    area->setStyleSheet(QString("#%1{background:transparent;}"
                                "#%1:hover{background:qradialgradient(cx:0.5,cy:0.5,radius:0.6,fx:0.5,fy:0.5,"
                                "stop:0 rgba(255,214,140,110),stop:0.7 rgba(255,214,140,45),stop:1 rgba(255,214,140,0));}")
                            .arg(d.name));
  } else if (!d.look.art || d.kind == Kind::Label) {
    Look look = d.look;
    area->fill = BackColor(look);
    look.backColor = kDefaultColor;
    area->setStyleSheet(Css(look));
  }
  area->onClick = [this, id] { User(id, UserAction::Click); };
  if (d.kind != Kind::Label)
    area->onClickAt = [this, id](QPointF at) {
      // The program sees twips, whatever the window's zoom; the last
      // pixel's rounding stays inside the control.
      double twips = 15.0 / forms_[id.form].zoom;
      const Control& c = program_.surface().At(id);
      auto within = [](double v, float size) { return static_cast<float>(std::clamp(v, 0.0, std::max(0.0, size - 1.0))); };
      if (!mirroring_) ClickAt(program_, id, within(at.x() * twips, c.width), within(at.y() * twips, c.height));
    };
  // Whatever answers a click is a button to the keyboard too.
  if (program_.surface().Answers(id, Event::Click)) area->setFocusPolicy(Qt::TabFocus);
  area->onMove = [this, id] { User(id, UserAction::Hover); };
  return area;
}

void QtWindows::Finish(ControlId id, QWidget* w) {
  const ControlDecl& d = program_.surface().Decl(id);
  // A style sheet reaches a widget's children too; scoped to the widget's own
  // name, a panel's look stays on the panel.
  w->setObjectName(d.name);
  if (auto* option = dynamic_cast<OptionRow*>(w))
    if (const char* key = KeyOf(program_.surface().Table(id.form), d.name)) option->SetKey(key);
  // Over a panel, a text or a movie the player reads or watches, and a hover
  // text popping up would cover it: there it only names the control to a
  // screen reader.
  bool watched = d.kind == Kind::TextBox || d.kind == Kind::ListBox || d.kind == Kind::MediaPlayer;
  if (*d.toolTip && !watched && !HoldsControls(program_.surface().Table(id.form), d)) w->setToolTip(Q(d.toolTip));
  if (!w->styleSheet().isEmpty() && !w->styleSheet().contains('{'))
    w->setStyleSheet(QString("#%1{%2}").arg(d.name, w->styleSheet()));
  Connect(id, w);
  if (!dynamic_cast<Area*>(w) && program_.surface().Answers(id, Event::MouseMove)) {
    auto* watch = new MoveWatch(w, [this, id] { User(id, UserAction::Hover); });
    QList<QWidget*> surfaces{w};
    if (auto* scroll = qobject_cast<QAbstractScrollArea*>(w)) surfaces.push_back(scroll->viewport());
    for (QWidget* under : surfaces) {
      under->setMouseTracking(true);
      under->installEventFilter(watch);
    }
  }
}

void QtWindows::Connect(ControlId id, QWidget* w) {
  if (auto* dirs = dynamic_cast<DirList*>(w)) {
    QObject::connect(dirs, &QListWidget::itemActivated, this, [this, id](QListWidgetItem* item) {
      User(id, UserAction::Type, Cp1252FromUtf8(item->data(Qt::UserRole).toString().toStdString()));
    });
  } else if (auto* button = qobject_cast<QPushButton*>(w)) {
    QObject::connect(button, &QPushButton::clicked, this, [this, id] { User(id, UserAction::Click); });
  } else if (auto* check = qobject_cast<QCheckBox*>(w)) {
    QObject::connect(check, &QCheckBox::clicked, this,
                     [this, id, check] { User(id, UserAction::Check, {}, check->isChecked() ? 1 : 0); });
  } else if (auto* option = qobject_cast<QRadioButton*>(w)) {
    QObject::connect(option, &QRadioButton::clicked, this, [this, id] { User(id, UserAction::Select); });
  } else if (auto* list = qobject_cast<QListWidget*>(w)) {
    QObject::connect(list, &QListWidget::currentRowChanged, this, [this, id](int row) {
      if (row >= 0) User(id, UserAction::Choose, {}, row);
    });
  } else if (auto* line = qobject_cast<QLineEdit*>(w)) {
    QObject::connect(line, &QLineEdit::textEdited, this, [this, id](const QString& text) {
      User(id, UserAction::Type, FromQ(text));
      ShowTyped(id);
    });
  } else if (auto* box = qobject_cast<QPlainTextEdit*>(w)) {
    QObject::connect(box, &QPlainTextEdit::textChanged, this, [this, id, box] {
      if (mirroring_) return;
      User(id, UserAction::Type, FromQ(box->toPlainText().replace("\n", "\r\n")));
      ShowTyped(id);
    });
  }
}

void QtWindows::BuildMenus(int form) {
  FormSurface& s = program_.surface();
  const FormDecl& t = s.Table(form);
  FormWidgets& fw = forms_[form];
  std::map<int, QMenu*> menus;
  for (int i = 0; i < static_cast<int>(t.controls.size()); ++i) {
    const ControlDecl& d = t.controls[i];
    if (d.kind != Kind::Menu) continue;
    ControlId id{form, i};
    int parent = s.At(id).parent;
    if (parent < 0 && HasItems(t, d.name)) {
      menus[i] = fw.window->menuBar()->addMenu(Q(d.caption));
      fw.actions[i] = menus[i]->menuAction();
    } else if (parent < 0) {
      // A menu title with nothing below it is a command of its own.
      fw.actions[i] = fw.window->menuBar()->addAction(Q(d.caption));
      QObject::connect(fw.actions[i], &QAction::triggered, this, [this, id] { User(id, UserAction::Click); });
    } else if (menus.count(parent)) {
      fw.actions[i] = menus[parent]->addAction(Q(d.caption));
      if (*d.shortcut) fw.actions[i]->setShortcut(QKeySequence(QString(d.shortcut)));
      QObject::connect(fw.actions[i], &QAction::triggered, this, [this, id] { User(id, UserAction::Click); });
    }
  }
}

}  // namespace fw
