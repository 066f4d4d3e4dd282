// The artwork: every picture a form table names is a drawing the program
// holds, and it renders to something a player can see.
#include <gtest/gtest.h>

#include <QFont>
#include <QFontInfo>
#include <QImage>
#include <QMainWindow>
#include <QSet>

#include "bindings/qt/qt_art.h"
#include "bindings/qt/qt_window.h"
#include "shell/forms.h"
#include "test_program.h"

namespace fw {
namespace {

// The share of a picture's pixels that are not fully transparent.
double Covered(const QPixmap& pixmap) {
  QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
  long opaque = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) opaque += qAlpha(image.pixel(x, y)) > 0;
  return image.isNull() ? 0 : double(opaque) / (image.width() * image.height());
}

QSize PxSize(float width, float height) { return {QtWindows::Px(width), QtWindows::Px(height)}; }

TEST(Art, EveryArtNameOfEveryFormTableRendersAPicture) {
  int named = 0;
  for (const FormDef& form : AllForms()) {
    const FormDecl& t = *form.table;
    auto check = [&](const char* art, QSize size, const char* where) {
      if (!art) return;
      ++named;
      SCOPED_TRACE(std::string(t.name) + "." + where + ": " + art);
      ASSERT_FALSE(ArtPath(art).isEmpty()) << "no drawing for this name";
      for (qreal ratio : {1.0, 2.0}) {
        QPixmap picture = RenderArt(art, size, ratio);
        ASSERT_FALSE(picture.isNull());
        EXPECT_EQ(picture.size(), size * ratio);
        // Backgrounds and button faces fill their place; none is a blank.
        EXPECT_GT(Covered(picture), 0.6);
      }
    };
    check(t.look.art, PxSize(t.width, t.height), "Form");
    for (const ControlDecl& c : t.controls) check(c.look.art, PxSize(c.width, c.height), c.name);
  }
  EXPECT_GE(named, 11);  // the menu, background, splash, credits and seven buttons
}

TEST(Art, UnknownNamesAndEmptySizesGiveNoPicture) {
  EXPECT_TRUE(ArtPath("nosuchpicture.png").isEmpty());
  EXPECT_TRUE(ArtPath(nullptr).isEmpty());
  EXPECT_TRUE(RenderArt("nosuchpicture.png", {10, 10}, 1).isNull());
  EXPECT_TRUE(RenderArt("choose.png", {0, 10}, 1).isNull());
  // The table's extension is a leftover of the file it once was: any will do.
  EXPECT_EQ(ArtPath("Choose.JPG"), ArtPath("choose.png"));
}

TEST(Art, TheIconComesAtEveryDesktopSizeAndTheHandPoints) {
  QIcon icon = AppIcon();
  for (int side : {16, 24, 32, 48, 64, 128, 256}) {
    SCOPED_TRACE(side);
    QPixmap pixmap = icon.pixmap(QSize(side, side), 1.0);
    ASSERT_EQ(pixmap.size(), QSize(side, side));
    EXPECT_GT(Covered(pixmap), 0.8);
  }
  QCursor hand = HandCursor();
  EXPECT_EQ(hand.shape(), Qt::BitmapCursor);
  EXPECT_EQ(hand.hotSpot(), QPoint(9, 1));
  EXPECT_FALSE(hand.pixmap().isNull());
}

TEST(Art, TheFormsWindowsFontsAreMappedToTheirDebianTwins) {
  SubstituteFonts();
  EXPECT_EQ(QFontInfo(QFont("MS Sans Serif")).family(), "Liberation Sans");
  EXPECT_EQ(QFontInfo(QFont("Times New Roman")).family(), "Liberation Serif");
  EXPECT_EQ(QFontInfo(QFont("Verdana")).family(), "DejaVu Sans");
}

// The window draws the drawings: the picture menu is a picture, not a flat
// panel, and every hot zone and the form itself show the drawn hand.
TEST(Art, TheWindowShowsThePicturesAndTheHand) {
  testing::TestProgram t{AllForms()};
  QtWindows windows(t.program);
  t.surface().SetObserver(&windows);
  t.program.Start();
  FormSurface& s = t.surface();
  QWidget* menu = windows.WidgetOf(s.Id("FrmGame", "Picture2"));
  ASSERT_NE(menu, nullptr);
  QImage shown = menu->grab().toImage();
  QSet<QRgb> colours;
  for (int y = 0; y < shown.height(); y += 7)
    for (int x = 0; x < shown.width(); x += 7) colours.insert(shown.pixel(x, y));
  EXPECT_GT(colours.size(), 200);
  for (const char* zone : {"Image1", "Image8", "Label14", "Picture1"})
    EXPECT_EQ(windows.WidgetOf(s.Id("FrmGame", zone))->cursor().shape(), Qt::BitmapCursor) << zone;
  EXPECT_EQ(windows.WindowOf(s.FindForm("FrmGame"))->centralWidget()->cursor().shape(), Qt::BitmapCursor);
}

}  // namespace
}  // namespace fw
