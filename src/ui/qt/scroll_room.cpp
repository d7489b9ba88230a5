#include "ui/qt/scroll_room.h"

#include <QEvent>
#include <QScreen>
#include <QVBoxLayout>

namespace skv::ui::qt {

namespace {
constexpr int titleBar = 30;
constexpr int borders = 4;
}  // namespace

ScrollRoom::ScrollRoom(QWidget* content, int around) : around_(around) {
  setFrameShape(NoFrame);
  setWidgetResizable(true);
  setFocusPolicy(Qt::NoFocus);
  // Any size: Qt would else give it that of its hint first, and lay it out for that in vain.
  content->resize(content->size());
  setWidget(content);
  // The window's ground, not a list's.
  viewport()->setAutoFillBackground(false);
  content->setAutoFillBackground(false);
}

void ScrollRoom::wrap(QWidget& window) {
  auto* content = new QWidget;
  content->setLayout(window.layout());
  auto* column = new QVBoxLayout(&window);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(new ScrollRoom(content, 0));
}

QSize ScrollRoom::sizeHint() const { return widget()->sizeHint(); }

QSize ScrollRoom::minimumSizeHint() const {
  const QSize content = widget()->minimumSizeHint().expandedTo(widget()->minimumSize());
  const QSize room = roomOnScreen(*screen()) - QSize(0, around_);
  return content.boundedTo(room);
}

bool ScrollRoom::eventFilter(QObject* watched, QEvent* event) {
  if (watched == widget() && event->type() == QEvent::LayoutRequest) updateGeometry();
  return QScrollArea::eventFilter(watched, event);
}

QSize roomOnScreen(const QScreen& screen) {
  return screen.availableSize() - QSize(2 * borders, titleBar + borders);
}

}  // namespace skv::ui::qt
