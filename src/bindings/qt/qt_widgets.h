#pragma once
// The widgets of the window beyond the toolkit's own: the picture areas that
// labels, picture boxes and images become, the directory list, the form's
// window, and the watch that tells of the mouse over the toolkit's widgets.
#include <QColor>
#include <QLabel>
#include <QListWidget>
#include <QMainWindow>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>

#include <functional>

class QKeyEvent;

namespace fw {

// The keyboard's place, drawn over the widget: a light ring over a dark one
// just inside its edge, seen on any picture and on any button.
void DrawFocusRing(QWidget* widget);

// A command button that shows the keyboard's place as the picture buttons
// do, where the desktop's own mark is a faint line.
class Button : public QPushButton {
 public:
  using QPushButton::QPushButton;

 protected:
  void paintEvent(QPaintEvent* e) override;
};

// A directory list: the folder itself, the folder above, then the folders
// inside, each entry holding its full path; activating one moves the list
// there as the user.
class DirList : public QListWidget {
 public:
  using QListWidget::QListWidget;
  void ShowFolder(const QString& path);

 private:
  void AddEntry(const QString& text, const QString& path);
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

  // Shows the picture file ("" for none), scaled to the area in the
  // screen's own pixels so that it stays sharp at any zoom and density. The
  // file is read and scaled again only when it, the area's size or the
  // density changes, or after ForgetPicture: a press moves the area and
  // keeps its picture.
  void ShowPicture(const QString& file);
  // The program loaded the picture anew: the next ShowPicture reads the file
  // again, which may have changed on disk.
  void ForgetPicture() { pictureStale_ = true; }

 protected:
  void paintEvent(QPaintEvent* e) override;
  void keyPressEvent(QKeyEvent* e) override;
  void mousePressEvent(QMouseEvent* e) override;
  void mouseMoveEvent(QMouseEvent*) override;
  void focusInEvent(QFocusEvent* e) override;

 private:
  QPixmap artPixmap_;
  QString pictureFile_;
  QSize pictureSize_;
  qreal pictureRatio_ = 0;
  bool pictureStale_ = false;
};

// An option button that shows, at the start of its line, the key of its
// form's key table that selects it, as a small key cap: what a key does is
// what the screen says.
class OptionRow : public QRadioButton {
 public:
  using QRadioButton::QRadioButton;
  void SetKey(const QString& key) { key_ = key; }
  const QString& Key() const { return key_; }
  // The room the key cap takes at the start of a line of the given height,
  // in the button's font: where the round button and the caption begin.
  int KeyRoom(int lineHeight) const;

 protected:
  void paintEvent(QPaintEvent* e) override;

 private:
  int CapWidth(int lineHeight) const;
  QString key_;
};

// Tells of the mouse moving over a widget that has no hover of its own (a
// text box, a button, a list): a form's help follows the mouse there too.
class MoveWatch : public QObject {
 public:
  MoveWatch(QObject* parent, std::function<void()> onMove) : QObject(parent), onMove_(std::move(onMove)) {}

 protected:
  bool eventFilter(QObject*, QEvent* e) override;

 private:
  std::function<void()> onMove_;
};

// A window that leaves its closing to the program's own unload, tells the
// program when the desktop resizes it, and hands the keys that no control
// took to the form's key table.
class FormWindow : public QMainWindow {
 public:
  using QMainWindow::QMainWindow;
  std::function<void()> onClose, onResize;
  std::function<bool(const QKeyEvent*)> onKey;
  // Whether the player can reach the widget: one under a panel is skipped by Tab.
  std::function<bool(QWidget*)> reachable;

 protected:
  bool focusNextPrevChild(bool next) override;
  void keyPressEvent(QKeyEvent* e) override;
  void closeEvent(QCloseEvent* e) override;
  void resizeEvent(QResizeEvent* e) override;
};

}  // namespace fw
