#include "ui/qt/caption_label.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <algorithm>

#include "ui/qt/flat_drawing.h"
#include "ui/qt/theme.h"

namespace skv::ui::qt {

namespace {
constexpr int paddingX = 9;
constexpr int paddingY = 3;
}  // namespace

CaptionLabel::CaptionLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void CaptionLabel::setCaption(const QString& caption, Colour colour) {
  colour_ = colour;
  setStrength();
  setText(caption);
  if (field_) field_->setAccessibleDescription(caption);
  updateGeometry();
  update();
}

// A heading on a ground of its own stands out by that, and the first window needs no second font.
void CaptionLabel::setStrength() {
  const bool strong = heading_ && !grounded();
  if (strong == strong_) return;
  strong_ = strong;
  QFont changed = QApplication::font(this);
  changed.setUnderline(font().underline());
  if (strong) {
    changed.setWeight(QFont::DemiBold);
    changed.setPointSizeF(changed.pointSizeF() * 1.12);
  }
  setFont(changed);
}

void CaptionLabel::makeNotice() {
  notice_ = true;
  setStrength();
  updateGeometry();
}

void CaptionLabel::tellOf(QWidget* field) {
  field_ = field;
  field_->setAccessibleDescription(text());
}

void CaptionLabel::setClickable(bool clickable) {
  if (clickable_ == clickable) return;
  clickable_ = clickable;
  setFocusPolicy(clickable ? Qt::StrongFocus : Qt::NoFocus);
  setCursor(clickable ? Qt::PointingHandCursor : Qt::ArrowCursor);
  QFont underlined = font();
  underlined.setUnderline(clickable);
  setFont(underlined);
  update();
}

void CaptionLabel::click() {
  if (clickable_ && onClick) onClick();
}

void CaptionLabel::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) click();
}

void CaptionLabel::keyPressEvent(QKeyEvent* event) {
  const bool press = event->key() == Qt::Key_Space || event->key() == Qt::Key_Return ||
                     event->key() == Qt::Key_Enter;
  if (clickable_ && press)
    click();
  else
    QLabel::keyPressEvent(event);
}

QSize CaptionLabel::sizeHint() const {
  const int extra = grounded() ? 2 * paddingX : 0;
  return {fontMetrics().horizontalAdvance(text()) + extra + 2,
          fontMetrics().height() + 2 * paddingY};
}

QSize CaptionLabel::minimumSizeHint() const { return {24, sizeHint().height()}; }

void CaptionLabel::paintEvent(QPaintEvent*) {
  if (text().isEmpty()) return;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QRect area = rect();
  if (sizeHint().width() < area.width()) area.setWidth(sizeHint().width());
  if (alignment() & Qt::AlignHCenter)
    area.moveLeft((width() - area.width()) / 2);
  else
    area = QStyle::visualRect(layoutDirection(), rect(), area);
  if (grounded()) {
    drawBox(painter, area, tint(colour_, palette()),
            notice_ ? palette().color(QPalette::Mid) : QColor(Qt::transparent));
    area.adjust(paddingX, 0, -paddingX, 0);
  }
  const QString line = fontMetrics().elidedText(text(), Qt::ElideMiddle, area.width());
  setToolTip(line == text() ? QString() : text());
  const auto role = clickable_ ? QPalette::Link : foregroundRole();
  painter.setPen(grounded() ? legible(colour_, palette()) : palette().color(role));
  painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter, line);
  if (!hasFocus()) return;
  painter.setBrush(Qt::NoBrush);
  painter.setPen(palette().color(QPalette::Link));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
}

}  // namespace skv::ui::qt
