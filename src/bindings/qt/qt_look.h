#pragma once
// What the window's files share of a form table's look: its text in the
// toolkit's strings, its colours as style sheets, its fonts at a zoom.
#include <QColor>
#include <QFont>
#include <QString>

#include <cstdint>
#include <string>

#include "forms/form_table.h"

namespace fw {

// The program's Windows-1252 text as the toolkit's, and back.
QString Q(const std::string& cp1252);
std::string FromQ(const QString& text);

// A caption without the "&" that marks a menu's key letter.
QString Plain(const std::string& caption);

QString ColorCss(std::int32_t rgb);
// The look of a control as a style sheet.
QString Css(const Look& look);
// A back colour of the look, or an invalid colour when there is none.
QColor BackColor(const Look& look);

// Whether a table names a font of its own for the control.
bool HasFont(const Font& f);
// A table's font at the window's zoom; the desktop's own font where the
// table names none. A size without a name is in the forms' own font.
QFont ZoomedFont(const Font& f, double zoom);
// A form's own font: the table's, or the one the tables were laid out in,
// MS Sans Serif at 8.25 points (here its metric twin), where it names none;
// the desktop's larger font would cut their captions short.
Font FormFont(const Font& f);

// Whether a label is tall enough for a second line: a one-line label whose
// text runs long is cut at its edge instead of showing two halves of lines.
bool HoldsTwoLines(const ControlDecl& d);

}  // namespace fw
