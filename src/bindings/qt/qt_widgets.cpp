#include "bindings/qt/qt_widgets.h"

#include <QCloseEvent>
#include <QFocusEvent>
#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

#include "bindings/qt/qt_art.h"

namespace fw {

void DrawFocusRing(QWidget* widget) {
  QPainter painter(widget);
  painter.setRenderHint(QPainter::Antialiasing);
  QRectF ring = QRectF(widget->rect()).adjusted(1.5, 1.5, -1.5, -1.5);
  painter.setPen(QPen(QColor(0, 0, 0, 200), 3));
  painter.drawRoundedRect(ring, 4, 4);
  painter.setPen(QPen(QColor(255, 214, 140), 1.5, Qt::DashLine));
  painter.drawRoundedRect(ring, 4, 4);
}

void Button::paintEvent(QPaintEvent* e) {
  QPushButton::paintEvent(e);
  if (hasFocus()) DrawFocusRing(this);
}

void DirList::ShowFolder(const QString& path) {
  clear();
  AddEntry(QDir::toNativeSeparators(path), path);
  item(0)->setSelected(true);
  QDir dir(path);
  if (dir.cdUp()) AddEntry("..", dir.absolutePath());
  for (const QFileInfo& sub : QDir(path).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name))
    AddEntry(sub.fileName(), sub.absoluteFilePath());
}

void DirList::AddEntry(const QString& text, const QString& path) {
  auto* item = new QListWidgetItem(QIcon::fromTheme("folder"), text, this);
  item->setData(Qt::UserRole, path);
}

void Area::paintEvent(QPaintEvent* e) {
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
  if (hasFocus()) DrawFocusRing(this);
}

void Area::ShowPicture(const QString& file) {
  hasPicture = !file.isEmpty();
  qreal ratio = devicePixelRatioF();
  bool same = file == pictureFile_ && (file.isEmpty() || (size() == pictureSize_ && ratio == pictureRatio_));
  if (same && !pictureStale_) return;
  bool had = !pictureFile_.isEmpty();
  pictureFile_ = file;
  pictureSize_ = size();
  pictureRatio_ = ratio;
  pictureStale_ = false;
  if (file.isEmpty()) {
    if (had) setPixmap(QPixmap());
    return;
  }
  QPixmap picture = QPixmap(file).scaled(size() * ratio, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  picture.setDevicePixelRatio(ratio);
  setPixmap(picture);
}

void Area::keyPressEvent(QKeyEvent* e) {
  bool press = e->key() == Qt::Key_Space || e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter;
  if (onClick && press && e->modifiers() == Qt::NoModifier) onClick();
  else QLabel::keyPressEvent(e);
}

void Area::mousePressEvent(QMouseEvent* e) {
  if (e->button() != Qt::LeftButton) return;
  if (onClickAt) onClickAt(e->position());
  else if (onClick) onClick();
}

void Area::mouseMoveEvent(QMouseEvent*) {
  if (onMove) onMove();
}

void Area::focusInEvent(QFocusEvent* e) {
  QLabel::focusInEvent(e);
  // Tab names what it reaches as the mouse does (a zone of the picture
  // menu fills the banner).
  bool byKeys = e->reason() == Qt::TabFocusReason || e->reason() == Qt::BacktabFocusReason;
  if (byKeys && onMove) onMove();
}

int OptionRow::CapWidth(int lineHeight) const {
  QFont bold = font();
  bold.setBold(true);
  return std::max(lineHeight, QFontMetrics(bold).horizontalAdvance(key_) + lineHeight / 2);
}

int OptionRow::KeyRoom(int lineHeight) const {
  return key_.isEmpty() ? 0 : CapWidth(lineHeight) + std::max(2, lineHeight / 4);
}

void OptionRow::paintEvent(QPaintEvent* e) {
  QRadioButton::paintEvent(e);
  if (key_.isEmpty()) return;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QColor ink = isEnabled() ? QColor(0, 0, 0) : QColor(128, 128, 128);
  qreal line = std::max<qreal>(1, height() / 12.0);
  QRect cap(0, 0, CapWidth(height()), height());
  painter.setPen(QPen(ink, line));
  painter.setBrush(QColor(255, 255, 255));
  painter.drawRoundedRect(QRectF(cap).adjusted(line / 2, line / 2, -line / 2, -line / 2), height() / 5.0, height() / 5.0);
  QFont bold = font();
  bold.setBold(true);
  painter.setFont(bold);
  painter.setPen(ink);
  painter.drawText(cap, Qt::AlignCenter, key_);
}

bool MoveWatch::eventFilter(QObject*, QEvent* e) {
  if (e->type() == QEvent::MouseMove || e->type() == QEvent::Enter) onMove_();
  return false;
}

bool FormWindow::focusNextPrevChild(bool next) {
  QWidget* first = nullptr;
  for (int tries = 0; tries < 200; ++tries) {
    if (!QMainWindow::focusNextPrevChild(next)) return false;
    QWidget* now = focusWidget();
    if (!now || now == first || !reachable || reachable(now)) return true;
    if (!first) first = now;
  }
  return true;
}

void FormWindow::keyPressEvent(QKeyEvent* e) {
  if (onKey && onKey(e)) return;
  QMainWindow::keyPressEvent(e);
}

void FormWindow::closeEvent(QCloseEvent* e) {
  e->ignore();
  if (onClose) onClose();
}

void FormWindow::resizeEvent(QResizeEvent* e) {
  QMainWindow::resizeEvent(e);
  if (onResize) onResize();
}

}  // namespace fw
