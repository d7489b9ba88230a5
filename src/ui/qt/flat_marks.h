// The small marks of the style: check boxes, option buttons, the arrow of a sorted column.
#pragma once

class QPainter;
class QStyleOption;

namespace skv::ui::qt {

inline constexpr int markSide = 16;

void drawCheck(QPainter& painter, const QStyleOption& option);
void drawRadio(QPainter& painter, const QStyleOption& option);
// Upwards for an ascending order.
void drawSortArrow(QPainter& painter, const QStyleOption& option);

}  // namespace skv::ui::qt
