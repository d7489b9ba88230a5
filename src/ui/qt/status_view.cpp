#include "ui/qt/status_view.h"

#include <QPainter>

#include "ui/qt/text.h"

namespace skv::ui::qt {

StatusView::StatusView(Bindings& bindings, Form& form, StatusLine& line) : line_(line) {
  setAccessibleName(tr("Status"));
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  new Binding(bindings, form, line, this, [this] {
    caption_ = shown(line_.caption);
    percent_ = line_.showsProgress ? qBound(0, line_.value.get(), 100) : -1;
    setAccessibleDescription(percent_ < 0 ? caption_
                                          : tr("%1 %2 percent").arg(caption_).arg(percent_));
    setVisible(line_.visible);
    update();
  });
}

QSize StatusView::sizeHint() const { return {200, fontMetrics().height() + 10}; }

void StatusView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QPalette& colours = palette();
  painter.fillRect(QRect(0, 0, width(), 1), colours.color(QPalette::Mid));
  QRect area = rect().adjusted(0, 1, 0, 0);
  if (percent_ >= 0) {
    QRect fill = area;
    fill.setWidth(area.width() * percent_ / 100);
    painter.fillRect(fill, colours.color(QPalette::Highlight));
    painter.fillRect(QRect(fill.left(), fill.bottom() - 1, fill.width(), 2),
                     colours.color(QPalette::Link));
  }
  painter.setPen(colours.color(QPalette::WindowText));
  area.adjust(14, 0, -14, 0);
  if (percent_ >= 0) {
    const QString number = tr("%1 %").arg(percent_);
    painter.drawText(area, Qt::AlignRight | Qt::AlignVCenter, number);
    area.setRight(area.right() - fontMetrics().horizontalAdvance(number) - 12);
  }
  painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter,
                   fontMetrics().elidedText(caption_, Qt::ElideMiddle, area.width()));
}

}  // namespace skv::ui::qt
