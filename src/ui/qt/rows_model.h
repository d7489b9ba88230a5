// The rows of a ListView as Qt's views ask for them. Nothing is copied but the row ids by which the
// model knows what changed and never shows a row that is gone.
#pragma once

#include <QAbstractTableModel>
#include <functional>
#include <vector>

#include "ui/model/list_view.h"

namespace skv::ui::qt {

class RowsModel : public QAbstractTableModel {
 public:
  // Columns of width 0 are none of the model's, so that nobody is told of them.
  explicit RowsModel(ListView& list);

  enum class Followed { asBefore, withOtherRows, inOtherOrder, fromScratch };
  // Follows the list after any number of changes.
  Followed refresh();
  // The list is no longer there: no rows.
  void detach();

  // The row's number in the list, from 1; 0 when the list has no longer this row in this place.
  int rowAt(const QModelIndex& index) const;

  // The list's column, from 0, that stands in a place of the view.
  int columnAt(int section) const { return seen_[static_cast<std::size_t>(section)]; }

  // What a row (from 1) tells by picture, mark and colour, for tool tips and screen readers.
  std::function<QString(int row)> words;
  // What the user does in a row.
  std::function<void(ListView::RowId, const std::string& newString)> renamed;
  std::function<void(ListView::RowId, bool checked)> checked;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  using Ids = std::vector<ListView::RowId>;

  void reorder(Ids now);
  const std::string& textAt(int row, int column) const;
  QString wordsOf(int row, int column) const;

  ListView* list_;
  std::vector<int> seen_;  // the list's columns that are seen
  Ids ids_;
};

}  // namespace skv::ui::qt
