#pragma once
#include <QCursor>
#include <QIcon>
#include <QPixmap>
#include <QString>

// The game's own artwork: SVG drawings compiled into the program, looked up
// by the name a form table gives ("choose.png" is the drawing "choose"), and
// rendered at the size and pixel density they are shown at, so they stay
// sharp at any zoom and on high-DPI screens.
namespace fw {

// The resource path of the drawing a table's art name stands for, or "" when
// the program holds no such drawing.
QString ArtPath(const char* artName);

// The drawing rendered to fill `size` (device-independent pixels) at the
// given device pixel ratio; a null pixmap for an unknown name or an empty size.
QPixmap RenderArt(const char* artName, QSize size, qreal devicePixelRatio);

// The window icon, drawn at every size a desktop asks for.
QIcon AppIcon();

// The hand that points at everything a player can click.
QCursor HandCursor();

// The fonts the forms name are Windows fonts; each is mapped to the font of
// the same widths that Debian ships, so labels fit their places.
void SubstituteFonts();

}  // namespace fw
