#include "ui/qt/row_drag.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTreeView>
#include <algorithm>
#include <utility>

namespace skv::ui::qt {

namespace {

constexpr int scrollMilliseconds = 50;
constexpr int scrollBorder = 14;  // pixels inside the list
constexpr int pixelsForOneMore = 20;
constexpr int mostRowsAtOnce = 12;

}  // namespace

RowDrag::RowDrag(QTreeView& view, std::function<int()> row)
    : QObject(&view), view_(view), row_(std::move(row)) {
  view_.installEventFilter(this);
  scroller_.setInterval(scrollMilliseconds);
  connect(&scroller_, &QTimer::timeout, this, [this] { scroll(); });
  connect(view_.verticalScrollBar(), &QScrollBar::valueChanged, this, [this] {
    if (running()) follow();
  });
}

void RowDrag::press(QPoint place) {
  cancel();
  state_ = State::pressed;
  start_ = place_ = place;
}

bool RowDrag::move(QPoint place) {
  if (state_ == State::idle) return false;
  place_ = place;
  if (state_ == State::over) return true;
  if (state_ == State::pressed) {
    if ((place - start_).manhattanLength() < QApplication::startDragDistance()) return true;
    state_ = State::running;
    view_.viewport()->setCursor(Qt::ClosedHandCursor);
    view_.viewport()->update();
    scroller_.start();
  }
  follow();
  return true;
}

std::optional<int> RowDrag::release() {
  const int wanted = running() && row_() != 0 ? steps() : 0;
  cancel();
  return std::exchange(state_, State::idle) == State::over ? std::optional(wanted) : std::nullopt;
}

void RowDrag::cancel() {
  if (!running()) return;
  state_ = State::over;
  scroller_.stop();
  view_.viewport()->unsetCursor();
  view_.viewport()->update();
}

int RowDrag::rows() const { return view_.model() ? view_.model()->rowCount() : 0; }

int RowDrag::steps() const {
  const int row = row_();
  return gap_ >= row ? gap_ - row : gap_ + 1 - row;
}

void RowDrag::follow() {
  // Beside the list the mouse still points at the row of its height.
  const QModelIndex over =
      view_.indexAt({1, std::clamp(place_.y(), 0, view_.viewport()->height() - 1)});
  const int gap = !over.isValid()                                    ? rows()
                  : place_.y() < view_.visualRect(over).center().y() ? over.row()
                                                                     : over.row() + 1;
  if (std::exchange(gap_, gap) != gap) view_.viewport()->update();
}

void RowDrag::scroll() {
  const int above = scrollBorder - place_.y();
  const int below = place_.y() - (view_.viewport()->height() - scrollBorder);
  const int beyond = std::max(above, below);
  if (beyond <= 0) return;
  const int step = std::min(1 + beyond / pixelsForOneMore, mostRowsAtOnce);
  QScrollBar& bar = *view_.verticalScrollBar();
  bar.setValue(bar.value() + (above > below ? -step : step));
}

void RowDrag::paint(QPainter& painter) const {
  const int count = rows();
  if (!running() || count == 0 || row_() == 0 || steps() == 0) return;
  const int gap = std::min(gap_, count);
  const QRect beside = view_.visualRect(view_.model()->index(std::max(gap - 1, 0), 0));
  const int y =
      std::clamp(gap == 0 ? beside.top() : beside.bottom() + 1, 3, view_.viewport()->height() - 4);
  const QColor colour = view_.palette().color(QPalette::Link);
  const int right = view_.viewport()->width() - 4;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(colour, 2));
  painter.drawLine(6, y, right - 3, y);
  painter.setBrush(colour);
  for (const int end : {5, right}) painter.drawEllipse(QPoint(end, y), 2, 2);
}

bool RowDrag::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::WindowDeactivate:
    case QEvent::Hide:
    case QEvent::EnabledChange:
      cancel();
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace skv::ui::qt
