#include "bindings/qt/qt_window.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>
#include <QGroupBox>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLayout>
#include <QKeySequence>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QRadioButton>
#include <QScreen>
#include <QStyle>
#include <QScrollBar>

#include <algorithm>
#include <iterator>

#include "bindings/qt/qt_art.h"
#include "forms/codepage.h"
#include "forms/program.h"
#include "forms/user_actions.h"

namespace fw {
namespace {

QString Q(const std::string& cp1252) { return QString::fromStdString(Utf8FromCp1252(cp1252)); }

std::string FromQ(const QString& text) { return Cp1252FromUtf8(text.toStdString()); }

QString ColorCss(std::int32_t rgb) {
  return QString("rgb(%1,%2,%3)").arg(rgb & 0xFF).arg((rgb >> 8) & 0xFF).arg((rgb >> 16) & 0xFF);
}

// The look of a control as a style sheet.
QString Css(const Look& look) {
  QString css;
  if (look.foreColor != kDefaultColor) css += "color:" + ColorCss(look.foreColor) + ";";
  if (look.transparent) css += "background:transparent;";
  else if (look.backColor != kDefaultColor) css += "background-color:" + ColorCss(look.backColor) + ";";
  return css;
}

// Whether a table names a font of its own for the control.
bool HasFont(const Font& f) { return f.name || f.points > 0; }

// A table's font at the window's zoom; the desktop's own font where the
// table names none. A size without a name is in the forms' own font.
QFont ZoomedFont(const Font& f, double zoom) {
  QFont font = QApplication::font();
  if (HasFont(f)) font.setFamily(f.name ? f.name : "MS Sans Serif");
  qreal points = f.points > 0 ? f.points : font.pointSizeF();
  if (points > 0) font.setPointSizeF(points * zoom);
  else font.setPixelSize(static_cast<int>(font.pixelSize() * zoom + 0.5));
  if (f.bold) font.setBold(true);
  return font;
}

// A form's own font: the table's, or the one the tables were laid out in,
// MS Sans Serif at 8.25 points (here its metric twin), where it names none;
// the desktop's larger font would cut their captions short.
Font FormFont(const Font& f) { return HasFont(f) ? f : Font{"MS Sans Serif", 8.25f, f.bold}; }

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

// A caption without the "&" that marks a menu's key letter.
QString Plain(const std::string& caption) {
  QString text = Q(caption);
  return text.remove(QRegularExpression("&(?!&)"));
}

// A back colour of the look, or an invalid colour when there is none.
QColor BackColor(const Look& look) {
  if (look.transparent || look.backColor == kDefaultColor) return {};
  return QColor(look.backColor & 0xFF, (look.backColor >> 8) & 0xFF, (look.backColor >> 16) & 0xFF);
}

// Whether a label is tall enough for a second line: a one-line label whose
// text runs long is cut at its edge instead of showing two halves of lines.
bool HoldsTwoLines(const ControlDecl& d) {
  float points = d.look.font.points > 0 ? d.look.font.points : 8.25f;
  return d.height >= 2 * points * 20 * 1.15f;  // a point is 20 twips
}

// A directory list: the folder itself, the folder above, then the folders
// inside, each entry holding its full path; activating one moves the list
// there as the user.
class DirList : public QListWidget {
 public:
  using QListWidget::QListWidget;
  void ShowFolder(const QString& path) {
    clear();
    AddEntry(QDir::toNativeSeparators(path), path);
    item(0)->setSelected(true);
    QDir dir(path);
    if (dir.cdUp()) AddEntry("..", dir.absolutePath());
    for (const QFileInfo& sub : QDir(path).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name))
      AddEntry(sub.fileName(), sub.absoluteFilePath());
  }

 private:
  void AddEntry(const QString& text, const QString& path) {
    auto* item = new QListWidgetItem(QIcon::fromTheme("folder"), text, this);
    item->setData(Qt::UserRole, path);
  }
};

// A label, picture box or image: shows text or a picture, and answers clicks
// and mouse moves.
class Area : public QLabel {
 public:
  using QLabel::QLabel;
  std::function<void()> onClick, onMove;
  // A click of the mouse, where it fell; onClick when unset.
  std::function<void(QPointF)> onClickAt;
  // Painted under the text or picture. A style sheet's background would
  // reach the children's palette too and paint a panel's boxes and buttons
  // black on black.
  QColor fill;
  // The table's artwork, drawn unless the program has given a picture file.
  const char* art = nullptr;
  bool hasPicture = false;

 protected:
  void paintEvent(QPaintEvent* e) override {
    if (fill.isValid()) QPainter(this).fillRect(rect(), fill);
    if (art && !hasPicture) {
      // Rendered again only when the size or the screen's density changes:
      // a scrolling picture moves every tick but keeps its size.
      qreal ratio = devicePixelRatioF();
      if (artPixmap_.isNull() || artPixmap_.deviceIndependentSize().toSize() != size() ||
          artPixmap_.devicePixelRatio() != ratio)
        artPixmap_ = RenderArt(art, size(), ratio);
      QPainter(this).drawPixmap(0, 0, artPixmap_);
    }
    QLabel::paintEvent(e);
    if (hasFocus()) {
      // The keyboard's place, seen on any picture: a light ring over a dark one.
      QPainter painter(this);
      painter.setRenderHint(QPainter::Antialiasing);
      QRectF ring = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
      painter.setPen(QPen(QColor(0, 0, 0, 200), 3));
      painter.drawRoundedRect(ring, 4, 4);
      painter.setPen(QPen(QColor(255, 214, 140), 1.5, Qt::DashLine));
      painter.drawRoundedRect(ring, 4, 4);
    }
  }
  void keyPressEvent(QKeyEvent* e) override {
    bool press = e->key() == Qt::Key_Space || e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter;
    if (onClick && press && e->modifiers() == Qt::NoModifier) onClick();
    else QLabel::keyPressEvent(e);
  }
  void mousePressEvent(QMouseEvent* e) override {
    if (e->button() != Qt::LeftButton) return;
    if (onClickAt) onClickAt(e->position());
    else if (onClick) onClick();
  }
  void mouseMoveEvent(QMouseEvent*) override {
    if (onMove) onMove();
  }

 private:
  QPixmap artPixmap_;
};

// Tells of the mouse moving over a widget that has no hover of its own (a
// text box, a button, a list): a form's help follows the mouse there too.
class MoveWatch : public QObject {
 public:
  MoveWatch(QObject* parent, std::function<void()> onMove) : QObject(parent), onMove_(std::move(onMove)) {}

 protected:
  bool eventFilter(QObject*, QEvent* e) override {
    if (e->type() == QEvent::MouseMove || e->type() == QEvent::Enter) onMove_();
    return false;
  }

 private:
  std::function<void()> onMove_;
};

// A window that leaves its closing to the program's own unload, tells the
// program when the desktop resizes it, and hands the keys that no control
// took to the form's key table.
class FormWindow : public QMainWindow {
 public:
  std::function<void()> onClose, onResize;
  std::function<bool(const QKeyEvent*)> onKey;
  // Whether the player can reach the widget: one under a panel is skipped by Tab.
  std::function<bool(QWidget*)> reachable;

 protected:
  bool focusNextPrevChild(bool next) override {
    QWidget* first = nullptr;
    for (int tries = 0; tries < 200; ++tries) {
      if (!QMainWindow::focusNextPrevChild(next)) return false;
      QWidget* now = focusWidget();
      if (!now || now == first || !reachable || reachable(now)) return true;
      if (!first) first = now;
    }
    return true;
  }
  void keyPressEvent(QKeyEvent* e) override {
    if (onKey && onKey(e)) return;
    QMainWindow::keyPressEvent(e);
  }
  void closeEvent(QCloseEvent* e) override {
    e->ignore();
    if (onClose) onClose();
  }
  void resizeEvent(QResizeEvent* e) override {
    QMainWindow::resizeEvent(e);
    if (onResize) onResize();
  }
};

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

// What a screen reader calls a control: its caption, or its hover text where
// the caption is the control's value (a text box's text) or there is none.
QString AccessibleName(const ControlDecl& d, const std::string& caption) {
  bool captionIsValue = d.kind == Kind::TextBox || d.kind == Kind::ListBox;
  if (!captionIsValue && !caption.empty()) return Plain(caption);
  return Q(d.toolTip);
}

// What a container's children are placed in: the inside of a scrolling one.
QWidget* Inside(QWidget* container) {
  auto* scroll = qobject_cast<QScrollArea*>(container);
  return scroll ? scroll->widget() : container;
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

// Whether other controls lie inside this one.
bool HoldsControls(const FormDecl& t, const ControlDecl& d) {
  for (const ControlDecl& c : t.controls)
    if (std::string_view(c.parent) == d.name) return true;
  return false;
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

}  // namespace

QtWindows::QtWindows(Program& program) : program_(program), hand_(HandCursor()) {
  SubstituteFonts();
  QGuiApplication::setWindowIcon(AppIcon());
}

QtWindows::~QtWindows() {
  for (auto& [form, w] : forms_) delete w.window;
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
  it->second.window->hide();
  it->second.window->deleteLater();
  forms_.erase(it);
  std::erase(shownOrder_, form);
}

void QtWindows::Build(int form) {
  pending_.erase(form);
  if (forms_.count(form)) return;
  FormSurface& s = program_.surface();
  const FormDecl& t = s.Table(form);
  auto* window = new FormWindow;
  window->onClose = [this, form] {
    if (!mirroring_) CloseForm(program_, form);
  };
  window->onKey = [this, form](const QKeyEvent* e) { return PressKey(form, e); };
  window->reachable = [this, form](QWidget* w) {
    FormSurface& s = program_.surface();
    const std::vector<QWidget*>& widgets = forms_[form].widgets;
    auto it = std::find(widgets.begin(), widgets.end(), w);
    if (it == widgets.end()) return true;  // not a control's own widget: the toolkit's
    return s.Unreachable({form, static_cast<int>(it - widgets.begin())}).empty();
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
  FormWidgets& fw = forms_[form];
  fw.window = window;
  fw.widgets.assign(t.controls.size(), nullptr);
  fw.actions.assign(t.controls.size(), nullptr);
  // Parents come before their children in a table, and later controls stack
  // above earlier ones, so building in order gives both.
  for (int i = 0; i < static_cast<int>(t.controls.size()); ++i) {
    ControlId id{form, i};
    const Control& c = s.At(id);
    QWidget* parent = c.parent >= 0 ? Inside(fw.widgets[c.parent]) : client;
    if (!parent) continue;
    fw.widgets[i] = Make(id, parent);
    if (fw.widgets[i]) fw.widgets[i]->raise();
  }
  BuildMenus(form);
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
  client->setFont(ZoomedFont(FormFont(t.look.font), fw.zoom));
  ZoomChrome(form);
  for (int i = 0; i < static_cast<int>(t.controls.size()); ++i) ApplyFont({form, i});
  mirroring_ = true;
  for (int i = 0; i < static_cast<int>(t.controls.size()); ++i) Apply({form, i});
  mirroring_ = false;
  ApplyForm(form);
}

QWidget* QtWindows::Make(ControlId id, QWidget* parent) {
  const ControlDecl& d = program_.surface().Decl(id);
  QWidget* w = nullptr;
  switch (d.kind) {
    case Kind::Label:
    case Kind::PictureBox:
    case Kind::Image: {
      if (d.kind == Kind::PictureBox && d.look.scrollBar) {
        // A view on a larger picture: the children scroll inside it.
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
        w = scroll;
        break;
      }
      auto* area = new Area(parent);
      area->setMouseTracking(true);
      if (d.kind == Kind::Label) area->setWordWrap(HoldsTwoLines(d));
      if (d.look.handCursor) area->setCursor(hand_);
      // A label's drawing lies under its text, which keeps its own look.
      if (d.look.art && d.kind == Kind::Label) area->art = d.look.art;
      if (d.look.art && d.kind != Kind::Label) {
        area->art = d.look.art;
      } else if (d.look.transparent && d.kind == Kind::Image) {
        // A hot zone on a picture: the picture shows what it is, and a soft
        // lamplight under the mouse shows that it can be clicked.
        area->setStyleSheet(QString("#%1{background:transparent;}"
                                    "#%1:hover{background:qradialgradient(cx:0.5,cy:0.5,radius:0.6,fx:0.5,fy:0.5,"
                                    "stop:0 rgba(255,214,140,110),stop:0.7 rgba(255,214,140,45),stop:1 rgba(255,214,140,0));}")
                                .arg(d.name));
      } else {
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
      w = area;
      break;
    }
    case Kind::TextBox:
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
      break;
    case Kind::CommandButton: {
      auto* button = new QPushButton(parent);
      button->setAutoDefault(true);  // Enter presses the button that has the focus
      w = button;
      break;
    }
    case Kind::CheckBox:
      w = new QCheckBox(parent);
      w->setStyleSheet(Css(d.look));
      break;
    case Kind::OptionButton: {
      auto* option = new QRadioButton(parent);
      option->setAutoExclusive(false);  // the surface keeps one selected
      option->setStyleSheet(Css(d.look));
      w = option;
      break;
    }
    case Kind::ListBox:
      w = new QListWidget(parent);
      w->setStyleSheet(Css(d.look));
      break;
    case Kind::ProgressBar: {
      auto* bar = new QProgressBar(parent);
      bar->setTextVisible(false);
      w = bar;
      break;
    }
    case Kind::MediaPlayer:
      if (std::string_view(d.parent).empty()) return nullptr;  // a sound player has no face
      w = new QWidget(parent);
      w->setStyleSheet("background-color:black;");
      break;
    case Kind::Frame: {
      // The caption sits on the frame's top line, and the controls inside
      // keep their places from the frame's corner.
      auto* group = new QGroupBox(parent);
      QString ink = ColorCss(d.look.foreColor == kDefaultColor ? 0 : d.look.foreColor);
      group->setStyleSheet(QString("QGroupBox#%1{color:%2;border:1px solid %2;border-radius:3px;margin-top:7px;}"
                                   "QGroupBox#%1::title{subcontrol-origin:margin;left:8px;padding:0 3px;}")
                               .arg(d.name, ink));
      w = group;
      break;
    }
    case Kind::Shape: {
      auto* frame = new QFrame(parent);
      frame->setStyleSheet(QString("border:%1px solid %2;background:transparent;")
                               .arg(d.look.borderWidth)
                               .arg(ColorCss(d.look.foreColor == kDefaultColor ? 0 : d.look.foreColor)));
      w = frame;
      break;
    }
    case Kind::DirListBox:
      w = new DirList(parent);
      w->setStyleSheet(Css(d.look));
      break;
    case Kind::Timer:
    case Kind::FileDialog:
    case Kind::Menu:
      return nullptr;
  }
  // A style sheet reaches a widget's children too; scoped to the widget's own
  // name, a panel's look stays on the panel.
  w->setObjectName(d.name);
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
  return w;
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

int QtWindows::Px(int form, float twips) const {
  auto it = forms_.find(form);
  double zoom = it == forms_.end() ? 1.0 : it->second.zoom;
  return static_cast<int>(twips / 15.0 * zoom + 0.5);
}

double QtWindows::Zoom(int form) const {
  auto it = forms_.find(form);
  return it == forms_.end() ? 1.0 : it->second.zoom;
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

// The zoom a window carries, for dialogs that open over it.
constexpr char kZoomProperty[] = "fablewrightZoom";

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

// Whether any menu item lies below the menu.
static bool HasItems(const FormDecl& t, std::string_view menu) {
  return std::any_of(t.controls.begin(), t.controls.end(),
                     [&](const ControlDecl& d) { return d.kind == Kind::Menu && menu == d.parent; });
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

bool QtWindows::PressKey(int form, const QKeyEvent* e) {
  if (PressZoomKey(form, e)) return true;
  if (e->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) return false;
  FormSurface& s = program_.surface();
  const FormDecl& t = s.Table(form);
  bool known = false;
  for (const KeyDecl& k : t.keys) {
    if (QKeySequence(QString(k.key))[0].key() != e->key()) continue;
    known = true;
    ControlId id = s.Id(t.name, k.control);
    UserAction action = s.Decl(id).kind == Kind::OptionButton ? UserAction::Select : UserAction::Click;
    if (CannotAct(s, id, action).empty()) {
      User(id, action);
      return true;
    }
  }
  // A key no control takes is the form's own (it cuts the splash short).
  return known || (!mirroring_ && ClickForm(program_, form).empty());
}

void QtWindows::ControlChanged(ControlId id, Prop prop) {
  if (!forms_.count(id.form)) return;
  bool was = mirroring_;
  mirroring_ = true;
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
  if (!f.picture.host.empty()) {
    window->centralWidget()->setStyleSheet(
        QString("QWidget#%1{border-image:url(%2);}").arg("client", QString::fromStdString(f.picture.host)));
    window->centralWidget()->setObjectName("client");
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
  if (QAction* action = fw.actions[id.index]) {
    action->setVisible(c.visible);
    action->setEnabled(c.enabled);
    action->setText(Q(c.caption));
    if (auto* bar = qobject_cast<QMenuBar*>(fw.window->menuWidget())) {
      // A bar whose menus are all hidden (a packaged game's) takes no room,
      // so that the window is the form's own size and nothing shows below it.
      const QList<QAction*> menus = bar->actions();
      bool any = std::any_of(menus.begin(), menus.end(), [](QAction* a) { return a->isVisible(); });
      if (bar->isVisibleTo(fw.window) != any) {
        bar->setVisible(any);
        ApplyForm(id.form);
      }
    }
    return;
  }
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
  if (auto* area = dynamic_cast<Area*>(w)) {
    area->hasPicture = !c.picture.host.empty();
    if (!c.picture.host.empty()) {
      // Scaled to the screen's own pixels, so that it stays sharp at any
      // zoom and on a high-density screen.
      qreal ratio = area->devicePixelRatioF();
      QPixmap picture = QPixmap(QString::fromStdString(c.picture.host))
                            .scaled(area->size() * ratio, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
      picture.setDevicePixelRatio(ratio);
      area->setPixmap(picture);
    } else if (c.decl->kind == Kind::Label) {
      area->setText(Plain(c.caption));
    }
  } else if (auto* line = qobject_cast<QLineEdit*>(w)) {
    if (FromQ(line->text()) != c.caption) line->setText(Q(c.caption));
  } else if (auto* box = qobject_cast<QPlainTextEdit*>(w)) {
    QString text = Q(c.caption).replace("\r\n", "\n");
    int typedAt = box->textCursor().position();
    bool replaced = box->toPlainText() != text;
    if (replaced) box->setPlainText(text);
    // The logic places the caret through SelStart, and a text it sets starts
    // there too; typing leaves the caret where the user's keys put it.
    if (caret == Caret::Typing) {
      if (replaced) {
        QTextCursor cursor = box->textCursor();
        cursor.setPosition(std::min(typedAt, static_cast<int>(text.size())));
        box->setTextCursor(cursor);
      }
    } else if (replaced || caret == Caret::SelStart) {
      QTextCursor cursor = box->textCursor();
      cursor.setPosition(std::min(c.selStart, static_cast<int>(box->toPlainText().size())));
      box->setTextCursor(cursor);
      box->ensureCursorVisible();
    }
  } else if (auto* button = qobject_cast<QPushButton*>(w)) {
    button->setText(ButtonText(button, *c.decl, Q(c.caption)));
  } else if (auto* group = qobject_cast<QGroupBox*>(w)) {
    group->setTitle(Q(c.caption));
  } else if (auto* check = qobject_cast<QCheckBox*>(w)) {
    check->setText(Q(c.caption));
    check->setChecked(c.checkValue == 1);
  } else if (auto* option = qobject_cast<QRadioButton*>(w)) {
    option->setText(Q(c.caption));
    option->setChecked(c.optionValue);
  } else if (auto* dirs = dynamic_cast<DirList*>(w)) {
    dirs->ShowFolder(QString::fromStdString(program_.HostFile(c.caption)));
  } else if (auto* list = qobject_cast<QListWidget*>(w)) {
    MirrorEntries(list, c.list);
    list->setCurrentRow(c.listIndex);
  } else if (auto* bar = qobject_cast<QProgressBar*>(w)) {
    bar->setRange(0, 1000);
    bar->setValue(c.barMax > 0 ? static_cast<int>(1000 * c.barValue / c.barMax) : 0);
  }
}

}  // namespace fw
