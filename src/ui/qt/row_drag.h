// A row that the user drags to another place of its list: a line shows where it would go, and the
// list scrolls while the mouse is at its upper or lower border.
#pragma once

#include <QObject>
#include <QPoint>
#include <QTimer>
#include <functional>
#include <optional>

class QPainter;
class QTreeView;

namespace skv::ui::qt {

class RowDrag : public QObject {
 public:
  // `row` answers the number of the row that was pressed, from 1, or 0 when it can be dragged no
  // more. It is asked all the time: rows may come and go under the drag.
  RowDrag(QTreeView& view, std::function<int()> row);

  // The left button went down on the row.
  void press(QPoint place);
  // Whether the movement is the drag's, which the view then must not see.
  bool move(QPoint place);
  // The button went up: how many rows lower (negative: higher) the row is wanted. None when nothing
  // was dragged.
  std::optional<int> release();
  void cancel();
  bool running() const { return state_ == State::running; }
  void paint(QPainter& painter) const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void follow();
  void scroll();
  int rows() const;
  // From the row's place to that of the line.
  int steps() const;

  QTreeView& view_;
  std::function<int()> row_;
  // Over: ended before the button went up, which is no click then.
  enum class State { idle, pressed, running, over } state_ = State::idle;
  QPoint start_, place_;  // of the mouse, in the viewport
  int gap_ = 0;           // the line lies below that many rows
  QTimer scroller_;
};

}  // namespace skv::ui::qt
