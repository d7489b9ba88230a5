// A ListView on screen.
#pragma once

#include <QTreeView>
#include <memory>

#include "ui/qt/bindings.h"
#include "ui/qt/place_pictures.h"
#include "ui/qt/rows_model.h"

namespace skv::ui::qt {

class ListTree : public QTreeView {
 public:
  ListTree(Bindings& bindings, Form& form, ListView& list, const QString& accessibleName);
  ~ListTree() override;

  // Draws the rows' small icons as places of an aircraft.
  void showPlaces();
  // What stands in the middle of an empty list.
  void setHint(const QString& hint) { hint_ = hint; }

 protected:
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override;
  void focusInEvent(QFocusEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void refresh();
  void showHeader();
  void fitColumns();
  void listen();
  void userSelects(int row);
  // Runs an event's handler when Qt is through with the mouse or key that caused it: a handler may
  // take long and change all rows.
  void later(std::function<void()> action);

  ListView& list_;
  RowsModel rows_;
  Binding* binding_;
  std::unique_ptr<PlacePictures> places_;
  QString hint_;
  bool refreshing_ = false;
  bool pressChangedRow_ = false;
  unsigned wishesSeen_ = 0;
  unsigned editsSeen_ = 0;
  int fittedWidth_ = 0;  // of the viewport when the columns were last fitted; 0 is never

  class RowDelegate;
};

}  // namespace skv::ui::qt
