// What the style draws: boxes, marks and bars, from a style option's state and palette.
#pragma once

#include <QColor>
#include <QRect>

class QPainter;
class QStyleOption;
class QStyleOptionComplex;

namespace skv::ui::qt {

inline constexpr int markSide = 16;

// A box with round corners and a border of one pixel.
void drawBox(QPainter& painter, const QRect& rect, const QColor& ground, const QColor& border,
             qreal radius = 5);

// The border of what a user types into or chooses from.
QColor fieldBorder(const QStyleOption* option, bool focus);
// Whether the option is a button that the Enter key presses.
bool isDefault(const QStyleOption* option);

void drawButton(QPainter& painter, const QStyleOption* option);
void drawLineEdit(QPainter& painter, const QStyleOption* option);
void drawHeader(QPainter& painter, const QStyleOption* option);
void drawTab(QPainter& painter, const QStyleOption* option);
void drawMenuBarItem(QPainter& painter, const QStyleOption* option);
void drawScrollBar(QPainter& painter, const QStyleOptionComplex* option, const QRect& handle);
void drawCheck(QPainter& painter, const QStyleOption& option);
void drawRadio(QPainter& painter, const QStyleOption& option);
// The arrow of a sorted column: upwards for an ascending order.
void drawSortArrow(QPainter& painter, const QStyleOption& option);

}  // namespace skv::ui::qt
