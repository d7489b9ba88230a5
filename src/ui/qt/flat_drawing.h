// What the style draws: boxes, marks and bars, from a style option's state and palette.
#pragma once

#include <QColor>
#include <QPalette>
#include <QRect>
#include <QStyle>
#include <utility>

class QPainter;
class QStyleOption;
class QStyleOptionComplex;

namespace skv::ui::qt {

inline constexpr int markSide = 16;

struct Border {
  Border(QColor theColour, qreal theWidth = 1)  // NOLINT(google-explicit-constructor)
      : colour(theColour), width(theWidth) {}
  Border(Qt::GlobalColor theColour) : Border(QColor(theColour)) {}  // NOLINT
  QColor colour;
  qreal width;
};

bool has(const QStyleOption* option, QStyle::StateFlag flag);
QColor colour(const QStyleOption* option, QPalette::ColorRole role);

// A box with round corners.
void drawBox(QPainter& painter, const QRect& rect, const QColor& ground, const Border& border,
             qreal radius = 5);

// The border of what a user types into or chooses from.
Border fieldBorder(const QStyleOption* option, bool focus);
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
