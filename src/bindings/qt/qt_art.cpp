#include "bindings/qt/qt_art.h"

#include <QFile>
#include <QFont>
#include <QGuiApplication>
#include <QPainter>
#include <QSvgRenderer>

namespace fw {

QString ArtPath(const char* artName) {
  if (!artName || !*artName) return {};
  QString stem = QString(artName).section('.', 0, 0).toLower();
  QString path = ":/art/" + stem + ".svg";
  return QFile::exists(path) ? path : QString();
}

namespace {

QPixmap Render(const QString& path, QSize size, qreal ratio) {
  if (path.isEmpty() || size.isEmpty()) return {};
  QSvgRenderer svg(path);
  if (!svg.isValid()) return {};
  QPixmap pixmap(size * ratio);
  pixmap.fill(Qt::transparent);
  {
    QPainter painter(&pixmap);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform | QPainter::TextAntialiasing);
    svg.render(&painter, QRectF(QPointF(0, 0), QSizeF(pixmap.size())));
  }
  pixmap.setDevicePixelRatio(ratio);
  return pixmap;
}

}  // namespace

QPixmap RenderArt(const char* artName, QSize size, qreal devicePixelRatio) {
  return Render(ArtPath(artName), size, devicePixelRatio);
}

QIcon AppIcon() {
  QIcon icon;
  // The small sizes have a drawing of their own: the large one's fine lines
  // would blur into a smudge at 16 and 24 pixels.
  for (int side : {16, 22, 24, 32, 48, 64, 128, 256}) {
    const char* name = side < 32 ? "fablewright-small" : "fablewright";
    icon.addPixmap(Render(ArtPath(name), QSize(side, side), 1));
  }
  return icon;
}

QCursor HandCursor() {
  qreal ratio = qGuiApp ? qGuiApp->devicePixelRatio() : 1;
  QPixmap hand = Render(ArtPath("hand"), QSize(32, 32), ratio);
  if (hand.isNull()) return QCursor(Qt::PointingHandCursor);
  return QCursor(hand, 9, 1);  // the tip of the pointing finger
}

void SubstituteFonts() {
  QFont::insertSubstitution("MS Sans Serif", "Liberation Sans");
  QFont::insertSubstitution("Arial", "Liberation Sans");
  QFont::insertSubstitution("Tahoma", "Liberation Sans");
  QFont::insertSubstitution("Times New Roman", "Liberation Serif");
  QFont::insertSubstitution("Courier New", "Liberation Mono");
  // No metric twin of Verdana is free; DejaVu Sans grew out of the same
  // wide, open letter shapes and comes closest to its widths.
  QFont::insertSubstitution("Verdana", "DejaVu Sans");
}

}  // namespace fw
