// The look of the program: one restrained style in a light and a dark dress.
#pragma once

#include <QColor>
#include <QPalette>

#include "ui/model/list_view.h"

class QApplication;

namespace skv::ui::qt {

// Dresses the whole program; dark when the desktop's user prefers dark windows. Call
// before any window.
void dress(QApplication& application);

bool isDark(const QPalette& palette);

// The program's colours are 0xBBGGRR numbers made for no background in particular. This is the same
// hue, made lighter or darker until it can be read on every background the palette has.
QColor legible(Colour colour, const QPalette& palette);
// A soft background of that hue for a text in legible().
QColor tint(Colour colour, const QPalette& palette);

}  // namespace skv::ui::qt
