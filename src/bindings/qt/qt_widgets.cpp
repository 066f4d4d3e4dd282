#include "bindings/qt/qt_widgets.h"

#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "bindings/qt/qt_art.h"

namespace fw {

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
