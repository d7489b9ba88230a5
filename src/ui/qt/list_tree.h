// A ListView on screen.
#pragma once

#include <QTreeView>

#include "ui/qt/bindings.h"
#include "ui/qt/rows_model.h"

namespace skv::ui::qt {

class ListColumns;
class RowDelegate;
class RowDrag;
struct PlaceSet;

class ListTree : public QTreeView {
 public:
  ListTree(Bindings& bindings, Form& form, ListView& list, const QString& accessibleName);
  ~ListTree() override;

  // Draws the rows' small icons as places, and tells them.
  void showPlaces(const PlaceSet& set);
  // What a row (from 1) tells by mark and colour, for tool tips and screen readers.
  void tellRows(std::function<QString(int row)> words) { rows_.words = std::move(words); }
  // The window leaves room for that many. Before the list is shown.
  void setLeastRows(int rows) { leastRows_ = rows; }
  // What stands in the middle of an empty list that has no words of its own.
  void setHint(const QString& hint) { hint_ = hint; }
  // What speaks in place of the words of an empty list while it is seen.
  void setOverlay(const QWidget* overlay) { overlay_ = overlay; }

 protected:
  bool event(QEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override;
  void focusInEvent(QFocusEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void refresh();
  void followRows();
  void followWishes();
  void listen();
  void userSelects(int row);
  void editSelected();
  // A click on a heading.
  void sortBy(int section);
  // Answers whether the key, Ctrl and a digit, was one for the heading in that place.
  bool columnKey(const QKeyEvent& event);
  // Answers whether the key was one for the row.
  bool rowKey(const QKeyEvent& event, int row);
  void moveSelected(ListView::RowId row, int steps);
  // Runs an event's handler when Qt is through with the mouse or key that caused it: a handler may
  // take long and change all rows.
  void later(std::function<void()> action);

  // Brings the row into view, now or when the list is first seen.
  void reveal(ListView::RowId row);
  bool inView(int row, int height) const;

  QString words() const;

  Bindings& bindings_;
  ListView& list_;
  RowsModel rows_;
  RowDelegate* delegate_;
  ListColumns* columns_;
  RowDrag* drag_;
  ListView::RowId dragged_ = 0;  // pressed with the left button
  Binding* binding_;
  int leastRows_ = 3;
  QString hint_;
  const QWidget* overlay_ = nullptr;
  int placeHeight_ = 0;  // of a row with pictures of places
  bool refreshing_ = false;
  bool pressChangedRow_ = false;
  unsigned wishesSeen_ = 0;
  unsigned editsSeen_ = 0;
  ListView::RowId selectedSeen_ = 0;
  ListView::RowId toReveal_ = 0;  // 0 when nothing waits for the list to be seen
};

}  // namespace skv::ui::qt
