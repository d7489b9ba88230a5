// The look of the program: one restrained style in a light and a dark dress, and
// in those of strong contrast that the desktop may ask for.
#pragma once

#include <QColor>
#include <QPalette>

#include "ui/model/list_view.h"
#include "ui/qt/desktop_scheme.h"

class QApplication;

namespace skv::ui::qt {

// Dresses the whole program; dark or in strong contrast when the
// desktop's user wants it, now or later. Call before any window.
void dress(QApplication& application);
// What it wears then, over the palette that the desktop has given.
QPalette paletteFor(const DesktopScheme& scheme, const QPalette& desktop);

bool isDark(const QPalette& palette);
// Text and ground as far apart as black and white.
bool isHighContrast(const QPalette& palette);
// The dress for eyes that need strong contrast: focus is told by a thick border.
bool hasStrongBorders(const QPalette& palette);

// The program's colours are 0xBBGGRR numbers made for no background in particular. This is the same
// hue, made lighter or darker until it can be read on every background the palette has.
QColor legible(Colour colour, const QPalette& palette);
// A soft background of that hue for a text in legible().
QColor tint(Colour colour, const QPalette& palette);

}  // namespace skv::ui::qt
