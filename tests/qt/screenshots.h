#pragma once
// Pictures of the screens, kept under build/screenshots/ for a person to look at.
#include <QDir>
#include <QString>
#include <QWidget>

namespace fw::testing {

// The folder of the pictures, made when missing.
inline QString ScreenshotsDir() {
  QString dir = QString(FABLEWRIGHT_SOURCE_DIR) + "/build/screenshots";
  QDir().mkpath(dir);
  return dir;
}

// Saves a picture of the widget's window part as NAME.png there.
inline bool SaveScreenshot(QWidget* widget, const QString& name) {
  return widget->grab().save(ScreenshotsDir() + "/" + name + ".png");
}

}  // namespace fw::testing
