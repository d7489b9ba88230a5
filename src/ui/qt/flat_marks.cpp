#include "ui/qt/flat_marks.h"

#include <QPainter>
#include <QStyleOption>

namespace skv::ui::qt {

namespace {

QRectF markArea(const QRect& rect) {
  QRectF area(0, 0, markSide - 1, markSide - 1);
  area.moveCenter(QRectF(rect).center());
  return area;
}

void setMarkColours(QPainter& painter, const QStyleOption& option, bool on) {
  const bool enabled = option.state & QStyle::State_Enabled;
  const QPalette& colours = option.palette;
  const QColor strong =
      enabled ? colours.color(QPalette::Link) : colours.color(QPalette::Disabled, QPalette::Text);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(on ? strong : colours.color(QPalette::Dark));
  painter.setBrush(on ? strong : colours.color(QPalette::Base));
}

}  // namespace

void drawCheck(QPainter& painter, const QStyleOption& option) {
  const bool on = option.state & QStyle::State_On;
  const QRectF area = markArea(option.rect);
  setMarkColours(painter, option, on);
  painter.drawRoundedRect(area, 3.5, 3.5);
  if (!on) return;
  painter.setPen(QPen(option.palette.color(QPalette::BrightText), 2, Qt::SolidLine, Qt::RoundCap,
                      Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  painter.drawPolyline(
      QPolygonF({area.topLeft() + QPointF(3.5, 7.8), area.topLeft() + QPointF(6.4, 10.7),
                 area.topLeft() + QPointF(11.6, 4.6)}));
}

void drawRadio(QPainter& painter, const QStyleOption& option) {
  const bool on = option.state & QStyle::State_On;
  const QRectF area = markArea(option.rect);
  setMarkColours(painter, option, on);
  painter.drawEllipse(area);
  if (!on) return;
  painter.setPen(Qt::NoPen);
  painter.setBrush(option.palette.color(QPalette::BrightText));
  painter.drawEllipse(area.center(), 3, 3);
}

void drawSortArrow(QPainter& painter, const QStyleOption& option) {
  const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(&option);
  if (!header || header->sortIndicator == QStyleOptionHeader::None) return;
  // Qt's names are those of the arrow that Windows draws for the other order.
  const bool up = header->sortIndicator == QStyleOptionHeader::SortDown;
  const QPointF middle = QRectF(option.rect).center();
  const qreal tip = up ? -2.5 : 2.5;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(option.palette.color(QPalette::Link));
  painter.drawPolygon(
      QPolygonF({middle + QPointF(-4, -tip), middle + QPointF(4, -tip), middle + QPointF(0, tip)}));
}

}  // namespace skv::ui::qt
