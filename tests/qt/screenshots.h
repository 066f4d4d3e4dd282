#pragma once
// Pictures of the screens, kept under build/screenshots/ for a person to look
// at, each checked against what the surface says is on screen.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QMainWindow>
#include <QString>
#include <QWidget>

#include <string>

#include "bindings/qt/qt_window.h"
#include "forms/surface.h"

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

// Whether a visible panel declared after the control's top-level ancestor
// lies over the control's middle: the panels cover the whole game screen, so
// such a control cannot be seen at all.
inline bool UnderAPanel(FormSurface& s, ControlId id) {
  FormState& f = s.Form(id.form);
  const Control& c = f.controls[id.index];
  float x = c.width / 2, y = c.height / 2;
  int top = id.index;
  for (int i = id.index; i >= 0; i = f.controls[i].parent) {
    x += f.controls[i].left;
    y += f.controls[i].top;
    top = i;
  }
  for (std::size_t i = top + 1; i < f.controls.size(); ++i) {
    const Control& p = f.controls[i];
    if (p.parent < 0 && p.decl->kind == Kind::PictureBox && p.visible && x >= p.left && x < p.left + p.width &&
        y >= p.top && y < p.top + p.height)
      return true;
  }
  return false;
}

// Whether a shown control of this kind and these values surely puts ink on
// the screen: a transparent hot zone and an empty label do not, and a
// picture from a quest's file may match what lies under it (a packaged
// game's page picture can be its background).
inline bool Draws(const Control& c) {
  switch (c.decl->kind) {
    case Kind::Label: return !c.caption.empty() && c.caption.find_first_not_of(' ') != std::string::npos;
    case Kind::Image: return c.picture.path.empty() && c.decl->look.art;
    case Kind::PictureBox: return c.picture.path.empty();
    case Kind::TextBox:
    case Kind::CommandButton:
    case Kind::CheckBox:
    case Kind::OptionButton:
    case Kind::ListBox:
    case Kind::ProgressBar:
    case Kind::Shape: return true;
    default: return false;
  }
}

// Checks the form's window as drawn against the surface, control by control:
// taking a control's widget away for a moment must change the picture when
// the surface says the control is on screen, uncovered and drawing, and must
// change nothing when it says the control is hidden or under a panel.
inline void ExpectDrawnAsTheSurfaceSays(QtWindows& windows, FormSurface& s, int form) {
  QMainWindow* window = windows.WindowOf(form);
  ASSERT_NE(window, nullptr);
  // Taking the focused widget away would move the focus, and its ring, to
  // another: the check is made with the focus nowhere.
  QWidget* focus = QApplication::focusWidget();
  if (focus) focus->clearFocus();
  const QImage whole = window->grab().toImage().convertToFormat(QImage::Format_ARGB32);
  const qreal ratio = whole.devicePixelRatio();
  FormState& f = s.Form(form);
  int checked = 0;
  for (int i = 0; i < static_cast<int>(f.controls.size()); ++i) {
    ControlId id{form, i};
    QWidget* w = windows.WidgetOf(id);
    if (!w || w == window->centralWidget()) continue;
    const Control& c = f.controls[i];
    bool seen = s.Shown(id) && !UnderAPanel(s, id);
    bool drawn = w->isVisibleTo(window);
    if (!drawn) {
      EXPECT_FALSE(seen && Draws(c)) << c.decl->name << " is on screen in the surface but has no widget shown";
      continue;
    }
    QRect onWindow(w->mapTo(window, QPoint(0, 0)), w->size());
    if (!onWindow.intersects(window->rect())) continue;
    QRect place = onWindow.intersected(window->rect());
    w->setVisible(false);
    // The whole window is drawn again: a part drawn alone differs from the
    // whole at its edges, where shapes are cut.
    const QImage without = window->grab().toImage().convertToFormat(QImage::Format_ARGB32);
    w->setVisible(true);
    QRect pixels(place.topLeft() * ratio, place.size() * ratio);
    bool changed = without.copy(pixels) != whole.copy(pixels);
    if (!seen) {
      EXPECT_FALSE(changed) << c.decl->name << " is hidden or covered in the surface but shows";
    } else if (Draws(c)) {
      EXPECT_TRUE(changed) << c.decl->name << " is on screen in the surface but draws nothing";
    }
    ++checked;
  }
  EXPECT_GT(checked, 0);
  if (focus) focus->setFocus();
}

// Saves the form's window as NAME.png and checks it against the surface.
inline void SaveCheckedScreenshot(QtWindows& windows, FormSurface& s, int form, const QString& name) {
  SCOPED_TRACE(name.toStdString());
  EXPECT_TRUE(SaveScreenshot(windows.WindowOf(form), name));
  ExpectDrawnAsTheSurfaceSays(windows, s, form);
}

}  // namespace fw::testing
