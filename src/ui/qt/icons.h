// The program's drawings. Those of one colour take whatever colour they are asked for, so that they
// stand out on light and dark alike.
#pragma once

#include <QColor>
#include <QIcon>
#include <QPalette>
#include <QPixmap>
#include <QString>

namespace skv::ui::qt {

// Drawn at `size` in device-independent pixels for a screen of `ratio` pixels each. An invalid
// colour keeps the drawing's own.
QPixmap drawing(const QString& name, QSize size, qreal ratio, const QColor& colour = {});

// An icon that is drawn when it is needed, at the size and sharpness it is needed in, greyed when
// disabled: in the colours of the drawing, or in one that the program's palette has at that time.
QIcon drawnIcon(const QString& name);
QIcon drawnIcon(const QString& name, QPalette::ColorRole role);

}  // namespace skv::ui::qt
