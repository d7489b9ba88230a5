// The columns of a list on screen: their shares of the room there is, the widths that the user
// gives them, and the arrow of the sort.
#pragma once

#include <QObject>
#include <functional>
#include <utility>
#include <vector>

#include "ui/model/list_view.h"

class QHeaderView;
class QTreeView;

namespace skv::ui::qt {

class RowsModel;

class ListColumns : public QObject {
 public:
  // `view` shows `rows`, which are those of `list`.
  ListColumns(QTreeView& view, const RowsModel& rows, ListView& list);

  // Called after the user has given the columns other widths, which the list has then.
  std::function<void()> changedByUser;
  // Follows the widths and the sort of the list.
  void refresh();
  // The columns share the room there is.
  void fit();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QHeaderView& header() const;
  void showSort();
  // The last one takes what the others leave, also of what the user takes from one of them.
  void fillLast();
  void note();

  QTreeView& view_;
  const RowsModel& rows_;
  ListView& list_;
  bool fitting_ = false;
  bool held_ = false;                                         // the user has the header
  bool moved_ = false;                                        // since then
  std::pair<int, SortOrder> sort_{-1, SortOrder::ascending};  // as shown last
  std::vector<int> widths_;  // as the list told them last, in twips
};

}  // namespace skv::ui::qt
