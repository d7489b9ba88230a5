// The two halves of a view.
#include <QKeyEvent>
#include <QPainter>
#include <QSplitter>
#include <QSplitterHandle>

#include "ui/qt/form_builder.h"
#include "ui/qt/main_window.h"

namespace skv::ui::qt {

namespace {

constexpr int gap = 12;
constexpr int leastHalf = 240;
constexpr int pixelsByKey = 16;

// The gap between the halves, with a grip like that of the split bar.
class Gap : public QSplitterHandle {
 public:
  explicit Gap(QSplitter* splitter) : QSplitterHandle(Qt::Horizontal, splitter) {
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Border between the halves"));
    setToolTip(tr("Drag to give one half more room"));
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const bool active = underMouse() || hasFocus();
    painter.setBrush(palette().color(active ? QPalette::Link : QPalette::Dark));
    painter.drawRoundedRect(QRectF(width() / 2.0 - 1.5, height() / 2.0 - 18, 3, 36), 1.5, 1.5);
  }
  void keyPressEvent(QKeyEvent* event) override {
    // Qt takes the gap's far side for its place where it counts from the right.
    const int place = x() + (isRightToLeft() ? width() : 0);
    if (event->key() == Qt::Key_Left)
      moveSplitter(place - pixelsByKey);
    else if (event->key() == Qt::Key_Right)
      moveSplitter(place + pixelsByKey);
    else
      QSplitterHandle::keyPressEvent(event);
  }
  void enterEvent(QEnterEvent*) override { update(); }
  void leaveEvent(QEvent*) override { update(); }
  void focusInEvent(QFocusEvent*) override { update(); }
  void focusOutEvent(QFocusEvent*) override { update(); }
};

class Halves : public QSplitter {
 public:
  Halves(FormBuilder& build, Divider& divider) : QSplitter(Qt::Horizontal), divider_(divider) {
    setHandleWidth(gap);
    setChildrenCollapsible(false);
    binding_ = new Binding(build.bindings(), build.form(), divider, this, [this] { layOut(); });
    connect(this, &QSplitter::splitterMoved, this, [this] {
      if (binding_->accepts()) divider_.share = shareOf(sizes());
    });
  }

 protected:
  QSplitterHandle* createHandle() override { return new Gap(this); }
  void resizeEvent(QResizeEvent* event) override {
    QSplitter::resizeEvent(event);
    layOut();
  }

 private:
  static int shareOf(const QList<int>& widths) {
    const int both = widths[0] + widths[1];
    return both == 0 ? 0 : qRound(1000.0 * widths[0] / both);
  }
  // Leaves the halves alone where they have their shares to the thousandth: a pixel may be less.
  void layOut() {
    if (!binding_->attached() || count() < 2 || shareOf(sizes()) == divider_.share) return;
    const int both = width() - gap;
    const int left = qRound(both * divider_.share / 1000.0);
    setSizes({left, both - left});
  }

  Divider& divider_;
  Binding* binding_;
};

}  // namespace

QSplitter* makeHalves(FormBuilder& build, Divider& divider, QWidget* left, QWidget* right) {
  auto* halves = new Halves(build, divider);
  QSizePolicy alike(QSizePolicy::Ignored, QSizePolicy::Preferred);
  alike.setHorizontalStretch(1);
  for (QWidget* half : {left, right}) {
    half->setSizePolicy(alike);
    half->setMinimumWidth(leastHalf);
    halves->addWidget(half);
  }
  return halves;
}

}  // namespace skv::ui::qt
