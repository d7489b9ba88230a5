#include "ui/qt/split_bar_view.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/qt/caption_label.h"
#include "ui/qt/form_window.h"

namespace skv::ui::qt {

namespace {

constexpr int leastList = 1000;  // twips
constexpr int keyStep = 240;     // twips

int twips(qreal pixels) { return qRound(pixels * twipsPerPixel); }

MouseButton buttonOf(Qt::MouseButton button) {
  return button == Qt::RightButton ? MouseButton::right : MouseButton::left;
}

}  // namespace

SplitBarView::SplitBarView(Bindings& bindings, Form& form, SplitBar& bar) : bar_(bar) {
  setFixedHeight(9);
  setCursor(Qt::SizeVerCursor);
  setFocusPolicy(Qt::StrongFocus);
  setAccessibleName(tr("Border between the lists"));
  setToolTip(tr("Drag to give one list more room"));
  binding_ = new Binding(bindings, form, bar, this, [this] {
    setEnabled(bar_.enabled && bar_.mouseMove != nullptr);
    setVisible(bar_.visible);
  });
}

void SplitBarView::mousePressEvent(QMouseEvent* event) {
  grip_ = event->position().y();
  binding_->fire(bar_.mouseDown, buttonOf(event->button()), twips(grip_));
}

void SplitBarView::mouseMoveEvent(QMouseEvent* event) {
  // From where the bar is now, which is not where it was when the system made the event.
  const qreal y = mapFromGlobal(event->globalPosition()).y() - grip_;
  binding_->fire(bar_.mouseMove, MouseButton::left, twips(y));
  if (onMoved) onMoved();
}

void SplitBarView::mouseReleaseEvent(QMouseEvent* event) {
  binding_->fire(bar_.mouseUp, buttonOf(event->button()), 0);
}

void SplitBarView::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Up && event->key() != Qt::Key_Down) {
    QWidget::keyPressEvent(event);
    return;
  }
  binding_->fire(bar_.mouseDown, MouseButton::left, 0);
  binding_->fire(bar_.mouseMove, MouseButton::left,
                 event->key() == Qt::Key_Up ? -keyStep : keyStep);
  binding_->fire(bar_.mouseUp, MouseButton::left, 0);
  if (onMoved) onMoved();
}

void SplitBarView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const bool active = underMouse() || hasFocus();
  painter.setBrush(palette().color(active ? QPalette::Link : QPalette::Dark));
  painter.drawRoundedRect(QRectF(width() / 2.0 - 18, height() / 2.0 - 1.5, 36, 3), 1.5, 1.5);
}

void SplitBarView::enterEvent(QEnterEvent*) { update(); }
void SplitBarView::leaveEvent(QEvent*) { update(); }

SplitLists::SplitLists(Bindings& bindings, FrmMain& form, FormWindow& window, const Parts& parts)
    : form_(form), parts_(parts), column_(new QVBoxLayout(this)) {
  auto* bar = new SplitBarView(bindings, form, form.lblSepBar);
  bar->onMoved = [this] {
    layOut();
    column_->activate();
  };
  column_->setContentsMargins(0, 0, 0, 0);
  column_->setSpacing(6);
  for (QWidget* part : {parts.upperHead, parts.upperList, parts.upperFoot,
                        static_cast<QWidget*>(bar), parts.lowerHead, parts.lowerList})
    column_->addWidget(part);
  parts.overlay->setParent(this);
  parts.overlay->makeNotice();
  window.onRefresh = [this] { layOut(); };
}

void SplitLists::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  shareRoom();
}

void SplitLists::shareRoom() {
  int rest = height() - column_->spacing() * (column_->count() - 1);
  for (int i = 0; i < column_->count(); ++i)
    if (QLayoutItem* item = column_->itemAt(i);
        item->widget() != parts_.upperList && item->widget() != parts_.lowerList)
      rest -= item->sizeHint().height();

  const int room = std::max(twips(rest), 2 * leastList);
  const int before = form_.sceneryHeight + form_.libraryHeight;
  const int upper = before == 0 ? room / 2 : form_.sceneryHeight + (room - before) / 2;
  form_.sceneryHeight = std::clamp(upper, leastList, room - leastList);
  form_.libraryHeight = room - form_.sceneryHeight;
  layOut();
}

void SplitLists::layOut() {
  if (form_.sceneryHeight == 0) return;
  // The column has exactly the room of both heights, so the shares are the heights.
  column_->setStretchFactor(parts_.upperList, form_.sceneryHeight);
  column_->setStretchFactor(parts_.lowerList, form_.libraryHeight);
  // The notice stands in the middle of the upper list.
  QRect notice({}, parts_.overlay->sizeHint());
  notice.moveCenter({width() / 2, parts_.upperHead->sizeHint().height() + column_->spacing() +
                                      form_.sceneryHeight / twipsPerPixel / 2});
  parts_.overlay->setGeometry(notice);
}

}  // namespace skv::ui::qt
