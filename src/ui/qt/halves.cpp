// The two halves of a view.
#include <QCoreApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QSplitter>
#include <QSplitterHandle>

#include "ui/qt/main_window.h"

namespace skv::ui::qt {

namespace {

constexpr int gap = 12;
constexpr int leastHalf = 240;
constexpr int keyStep = 16;

// The gap between the halves, with a grip like that of the split bar.
class Divider : public QSplitterHandle {
 public:
  explicit Divider(QSplitter* splitter) : QSplitterHandle(Qt::Horizontal, splitter) {
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(QCoreApplication::translate("Halves", "Border between the halves"));
    setToolTip(QCoreApplication::translate("Halves", "Drag to give one half more room"));
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
    if (event->key() == Qt::Key_Left)
      moveSplitter(x() - keyStep);
    else if (event->key() == Qt::Key_Right)
      moveSplitter(x() + keyStep);
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
  Halves() : QSplitter(Qt::Horizontal) {
    setHandleWidth(gap);
    setChildrenCollapsible(false);
  }

 protected:
  QSplitterHandle* createHandle() override { return new Divider(this); }
};

}  // namespace

QWidget* makeHalves(QWidget* left, QWidget* right) {
  auto* halves = new Halves;
  for (QWidget* half : {left, right}) {
    half->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    half->setMinimumWidth(leastHalf);
    halves->addWidget(half);
  }
  for (const int half : {0, 1}) halves->setStretchFactor(half, 1);
  halves->setSizes({1000, 1000});
  return halves;
}

}  // namespace skv::ui::qt
