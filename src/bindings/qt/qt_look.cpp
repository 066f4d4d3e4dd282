#include "bindings/qt/qt_look.h"

#include <QApplication>
#include <QRegularExpression>

#include "forms/codepage.h"

namespace fw {

QString Q(const std::string& cp1252) { return QString::fromStdString(Utf8FromCp1252(cp1252)); }

std::string FromQ(const QString& text) { return Cp1252FromUtf8(text.toStdString()); }

QString Plain(const std::string& caption) {
  QString text = Q(caption);
  return text.remove(QRegularExpression("&(?!&)"));
}

QString ColorCss(std::int32_t rgb) {
  return QString("rgb(%1,%2,%3)").arg(rgb & 0xFF).arg((rgb >> 8) & 0xFF).arg((rgb >> 16) & 0xFF);
}

QString Css(const Look& look) {
  QString css;
  if (look.foreColor != kDefaultColor) css += "color:" + ColorCss(look.foreColor) + ";";
  if (look.transparent) css += "background:transparent;";
  else if (look.backColor != kDefaultColor) css += "background-color:" + ColorCss(look.backColor) + ";";
  return css;
}

QColor BackColor(const Look& look) {
  if (look.transparent || look.backColor == kDefaultColor) return {};
  return QColor(look.backColor & 0xFF, (look.backColor >> 8) & 0xFF, (look.backColor >> 16) & 0xFF);
}

bool HasFont(const Font& f) { return f.name || f.points > 0; }

QFont ZoomedFont(const Font& f, double zoom) {
  QFont font = QApplication::font();
  if (HasFont(f)) font.setFamily(f.name ? f.name : "MS Sans Serif");
  qreal points = f.points > 0 ? f.points : font.pointSizeF();
  if (points > 0) font.setPointSizeF(points * zoom);
  else font.setPixelSize(static_cast<int>(font.pixelSize() * zoom + 0.5));
  if (f.bold) font.setBold(true);
  return font;
}

Font FormFont(const Font& f) { return HasFont(f) ? f : Font{"MS Sans Serif", 8.25f, f.bold}; }

bool HoldsTwoLines(const ControlDecl& d) {
  float points = d.look.font.points > 0 ? d.look.font.points : 8.25f;
  return d.height >= 2 * points * 20 * 1.15f;  // a point is 20 twips
}

}  // namespace fw
