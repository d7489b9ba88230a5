#include "ui/qt/flat_drawing.h"

#include <QPainter>
#include <QPixmapCache>
#include <QStyleOption>
#include <QtMath>
#include <cmath>

#include "ui/qt/theme.h"

namespace skv::ui::qt {

bool has(const QStyleOption* option, QStyle::StateFlag flag) { return option->state & flag; }

QColor colour(const QStyleOption* option, QPalette::ColorRole role) {
  return option->palette.color(role);
}

namespace {

QRectF markArea(const QRect& rect) {
  QRectF area(0, 0, markSide - 1, markSide - 1);
  area.moveCenter(QRectF(rect).center());
  return area;
}

qreal lineOf(const Border& border) { return border.colour.alpha() == 0 ? 0 : border.width; }

void drawOutlinedBox(QPainter& painter, const QRect& rect, const QColor& ground,
                     const Border& border, qreal radius) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  const qreal line = lineOf(border);
  const qreal inset = line / 2;
  painter.setPen(line == 0 ? QPen(Qt::NoPen) : QPen(border.colour, line));
  painter.setBrush(ground);
  painter.drawRoundedRect(QRectF(rect).adjusted(inset, inset, -inset, -inset), radius, radius);
  painter.restore();
}

bool isWhole(qreal number) { return number == std::floor(number); }

// Whether edges at whole numbers lie between pixels.
bool hasWholePixels(const QPainter& painter) {
  const QTransform pixels = painter.deviceTransform();
  return pixels.type() <= QTransform::TxScale && pixels.m11() == pixels.m22() &&
         pixels.m11() == painter.device()->devicePixelRatio() && isWhole(pixels.m11()) &&
         isWhole(pixels.dx()) && isWhole(pixels.dy());
}

// The four round corners of such boxes, in a picture without anything between them.
QPixmap corners(const QColor& ground, const Border& border, qreal radius, int side, qreal ratio) {
  const QString key = QString::asprintf("box %08x %08x %g %g %g", ground.rgba(),
                                        border.colour.rgba(), border.width, radius, ratio);
  QPixmap box;
  if (QPixmapCache::find(key, &box)) return box;
  const QRect all(0, 0, 2 * side, 2 * side);
  box = QPixmap(all.size() * ratio);
  box.setDevicePixelRatio(ratio);
  box.fill(Qt::transparent);
  QPainter painter(&box);
  drawOutlinedBox(painter, all, ground, border, radius);
  painter.end();
  QPixmapCache::insert(key, box);
  return box;
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

void drawBox(QPainter& painter, const QRect& rect, const QColor& ground, const Border& border,
             qreal radius) {
  const qreal line = lineOf(border);
  const int side = qCeil(radius + line);
  if (side == 0 || !isWhole(line) || qMin(rect.width(), rect.height()) < 2 * side ||
      !hasWholePixels(painter)) {
    drawOutlinedBox(painter, rect, ground, border, radius);
    return;
  }
  // The outline of a large box takes ten times as long to fill as all that it is made of here: of
  // the first picture of a window that was a third.
  const qreal ratio = painter.device()->devicePixelRatio();
  const QPixmap round = corners(ground, border, radius, side, ratio);
  const QRect inner = rect.adjusted(side, side, -side, -side);
  const QSize part = QSize(side, side) * ratio;
  const auto corner = [&](int x, int y, int column, int row) {
    painter.drawPixmap(QPoint(x, y), round,
                       {QPoint(column * part.width(), row * part.height()), part});
  };
  corner(rect.left(), rect.top(), 0, 0);
  corner(inner.right() + 1, rect.top(), 1, 0);
  corner(rect.left(), inner.bottom() + 1, 0, 1);
  corner(inner.right() + 1, inner.bottom() + 1, 1, 1);
  const int edge = static_cast<int>(line);
  const auto fill = [&painter](int left, int top, int width, int height, const QColor& colour) {
    if (colour.alpha() != 0) painter.fillRect(left, top, width, height, colour);
  };
  fill(inner.left(), rect.top(), inner.width(), edge, border.colour);
  fill(inner.left(), rect.bottom() + 1 - edge, inner.width(), edge, border.colour);
  fill(rect.left(), inner.top(), edge, inner.height(), border.colour);
  fill(rect.right() + 1 - edge, inner.top(), edge, inner.height(), border.colour);
  fill(inner.left(), rect.top() + edge, inner.width(), side - edge, ground);
  fill(inner.left(), inner.bottom() + 1, inner.width(), side - edge, ground);
  fill(rect.left() + edge, inner.top(), rect.width() - 2 * edge, inner.height(), ground);
}

Border fieldBorder(const QStyleOption* option, bool focus) {
  if (!focus) return colour(option, QPalette::Mid);
  return {colour(option, QPalette::Link), hasStrongBorders(option->palette) ? 3.0 : 1.0};
}

bool isDefault(const QStyleOption* option) {
  const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
  return button && button->features & QStyleOptionButton::DefaultButton &&
         has(option, QStyle::State_Enabled);
}

void drawButton(QPainter& painter, const QStyleOption* option) {
  const bool focus = has(option, QStyle::State_HasFocus);
  QColor ground = colour(option, QPalette::Base);
  Border border = fieldBorder(option, focus);
  if (!has(option, QStyle::State_Enabled)) {
    ground = Qt::transparent;
  } else if (has(option, QStyle::State_Sunken)) {
    ground = colour(option, QPalette::Highlight);
  } else if (isDefault(option)) {
    ground = colour(option, QPalette::Link);
    border.colour = focus ? colour(option, QPalette::WindowText) : ground;
  } else if (has(option, QStyle::State_MouseOver)) {
    ground = colour(option, QPalette::Midlight);
  }
  drawBox(painter, option->rect, ground, border);
}

void drawLineEdit(QPainter& painter, const QStyleOption* option) {
  const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
  const bool inPlace = frame && frame->lineWidth == 0;  // an editor within a row
  const bool enabled = has(option, QStyle::State_Enabled);
  drawBox(painter, option->rect, colour(option, enabled ? QPalette::Base : QPalette::Light),
          fieldBorder(option, inPlace || has(option, QStyle::State_HasFocus)), inPlace ? 0 : 5);
}

void drawHeader(QPainter& painter, const QStyleOption* option) {
  const bool hover = has(option, QStyle::State_MouseOver) && has(option, QStyle::State_Enabled);
  painter.fillRect(option->rect, colour(option, hover ? QPalette::Midlight : QPalette::Light));
  painter.setPen(colour(option, QPalette::Mid));
  painter.drawLine(option->rect.bottomLeft(), option->rect.bottomRight());
  if (qstyleoption_cast<const QStyleOptionHeader*>(option))
    painter.drawLine(option->rect.topRight(), option->rect.bottomRight());
}

void drawTab(QPainter& painter, const QStyleOption* option) {
  const bool selected = has(option, QStyle::State_Selected);
  if (selected && has(option, QStyle::State_HasFocus))
    drawBox(painter, option->rect, colour(option, QPalette::Midlight),
            hasStrongBorders(option->palette) ? fieldBorder(option, true) : Border(Qt::transparent),
            0);
  if (!selected && !has(option, QStyle::State_MouseOver)) return;
  QRect line = option->rect;
  line.setTop(line.bottom() - 1);
  painter.fillRect(line, colour(option, selected ? QPalette::Link : QPalette::Mid));
}

void drawMenuBarItem(QPainter& painter, const QStyleOption* option) {
  painter.fillRect(option->rect, colour(option, QPalette::Window));
  const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
  if (!item) return;
  if (has(option, QStyle::State_Selected))
    drawBox(painter, option->rect.adjusted(0, 1, 0, -1), colour(option, QPalette::Midlight),
            Qt::transparent);
  painter.setPen(option->palette.color(
      has(option, QStyle::State_Enabled) ? QPalette::Normal : QPalette::Disabled,
      QPalette::WindowText));
  painter.drawText(option->rect, Qt::AlignCenter | Qt::TextShowMnemonic, item->text);
}

void drawScrollBar(QPainter& painter, const QStyleOptionComplex* option, const QRect& handle) {
  const bool active = has(option, QStyle::State_MouseOver) || has(option, QStyle::State_Sunken);
  painter.fillRect(option->rect, colour(option, QPalette::Base));
  drawBox(painter, handle.adjusted(2, 2, -2, -2),
          colour(option, active ? QPalette::PlaceholderText : QPalette::Dark), Qt::transparent, 4);
}

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
