#include "ui/qt/status_view.h"

#include <QAccessible>
#include <QPainter>

#include "ui/qt/text.h"

namespace skv::ui::qt {

StatusView::StatusView(Bindings& bindings, Form& form, StatusLine& line) : line_(line) {
  setAccessibleName(tr("Status"));
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  new Binding(bindings, form, line, this, [this] { refresh(); });
}

void StatusView::refresh() {
  text_ = shown(line_.caption == "" ? line_.notice : line_.caption);
  const int percent = line_.showsProgress ? qBound(0, line_.value.get(), 100) : -1;
  setAccessibleDescription(percent < 0 ? text_ : tr("%1 %2 percent").arg(text_).arg(percent));
  if (std::exchange(percent_, percent) != percent && QAccessible::isActive()) {
    QAccessibleValueChangeEvent moved(this, percent);
    QAccessible::updateAccessibility(&moved);
  }
  setVisible(line_.visible);
  update();
}

QSize StatusView::sizeHint() const { return {200, fontMetrics().height() + 10}; }

void StatusView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QPalette& colours = palette();
  painter.fillRect(QRect(0, 0, width(), 1), colours.color(QPalette::Mid));
  drawTexts(painter, colours.color(QPalette::WindowText));
  if (percent_ < 0) return;
  QRect fill(0, 1, width() * percent_ / 100, height() - 1);
  painter.fillRect(fill, colours.color(QPalette::Highlight));
  painter.fillRect(QRect(fill.left(), fill.bottom() - 1, fill.width(), 2),
                   colours.color(QPalette::Link));
  painter.setClipRect(fill);
  drawTexts(painter, colours.color(QPalette::HighlightedText));
}

void StatusView::drawTexts(QPainter& painter, const QColor& colour) const {
  painter.setPen(colour);
  QRect area = rect().adjusted(14, 1, -14, 0);
  if (percent_ >= 0) {
    const QString number = tr("%1 %").arg(percent_);
    painter.drawText(area, Qt::AlignRight | Qt::AlignVCenter, number);
    area.setRight(area.right() - fontMetrics().horizontalAdvance(number) - 12);
  }
  painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter,
                   fontMetrics().elidedText(text_, Qt::ElideMiddle, area.width()));
}

}  // namespace skv::ui::qt
