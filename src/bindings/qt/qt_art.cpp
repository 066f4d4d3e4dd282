#include "bindings/qt/qt_art.h"

#include <QFile>
#include <QFont>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <map>

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

namespace {

// The icon's sizes, each drawn the first time something asks for it: a
// window shown offscreen asks for none, and the start does not wait on
// drawings nobody sees.
class ArtIconEngine : public QIconEngine {
 public:
  QIconEngine* clone() const override { return new ArtIconEngine(*this); }
  QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override {
    QList<QSize> sizes;
    for (int side : kSides) sizes << QSize(side, side);
    return sizes;
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    return scaledPixmap(size, mode, state, 1.0);
  }
  QPixmap scaledPixmap(const QSize& size, QIcon::Mode, QIcon::State, qreal scale) override {
    int side = std::max(1, static_cast<int>(std::min(size.width(), size.height()) * scale + 0.5));
    QPixmap& drawn = drawn_[side];
    // The small sizes have a drawing of their own: the large one's fine
    // lines would blur into a smudge at 16 and 24 pixels.
    if (drawn.isNull()) drawn = Render(ArtPath(side < 32 ? "fablewright-small" : "fablewright"), QSize(side, side), 1);
    return drawn;
  }
  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    painter->drawPixmap(rect, pixmap(rect.size(), mode, state));
  }

 private:
  static constexpr int kSides[] = {16, 22, 24, 32, 48, 64, 128, 256};
  std::map<int, QPixmap> drawn_;
};

}  // namespace

QIcon AppIcon() { return QIcon(new ArtIconEngine); }

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
