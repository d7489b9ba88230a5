#include "ui/qt/rows_model.h"

#include <algorithm>

#include "ui/qt/text.h"

namespace skv::ui::qt {

namespace {

// Whether one holds the rows of the other, in whatever order.
bool sameRows(std::vector<ListView::RowId> a, std::vector<ListView::RowId> b) {
  std::ranges::sort(a);
  std::ranges::sort(b);
  return a == b;
}

}  // namespace

RowsModel::RowsModel(ListView& list) : list_(&list) {
  for (std::size_t i = 0; i < list.columns().size(); ++i)
    if (list.columns()[i].width > 0) seen_.push_back(static_cast<int>(i));
}

RowsModel::Followed RowsModel::refresh() {
  Ids now;
  now.reserve(static_cast<std::size_t>(list_->count()));
  for (int row = 1; row <= list_->count(); ++row) now.push_back(list_->id(row));

  const auto [oldEnd, newEnd] = std::ranges::mismatch(ids_, now);
  const auto same = oldEnd - ids_.begin();
  // What is equal at the end, below the rows that are equal at the start.
  const auto [oldTail, newTail] = std::mismatch(ids_.rbegin(), std::make_reverse_iterator(oldEnd),
                                                now.rbegin(), std::make_reverse_iterator(newEnd));
  const int first = static_cast<int>(same);
  const int removed = static_cast<int>(oldTail.base() - oldEnd);
  const int added = static_cast<int>(newTail.base() - newEnd);

  if (removed == 0 && added == 0) {
    if (!ids_.empty()) Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    return Followed::asBefore;
  }
  if (removed == 0) {
    beginInsertRows({}, first, first + added - 1);
    ids_ = std::move(now);
    endInsertRows();
    return Followed::withOtherRows;
  }
  if (added == 0) {
    beginRemoveRows({}, first, first + removed - 1);
    ids_ = std::move(now);
    endRemoveRows();
    return Followed::withOtherRows;
  }
  if (removed == added && sameRows({oldEnd, oldTail.base()}, {newEnd, newTail.base()})) {
    reorder(std::move(now));
    return Followed::inOtherOrder;
  }
  beginResetModel();
  ids_ = std::move(now);
  endResetModel();
  return Followed::fromScratch;
}

void RowsModel::reorder(Ids now) {
  Q_EMIT layoutAboutToBeChanged();
  const QModelIndexList before = persistentIndexList();
  QModelIndexList after;
  for (const QModelIndex& index : before) {
    const auto place =
        std::ranges::find(now, ids_[static_cast<std::size_t>(index.row())]) - now.begin();
    after << this->index(static_cast<int>(place), index.column());
  }
  ids_ = std::move(now);
  changePersistentIndexList(before, after);
  Q_EMIT layoutChanged();
}

void RowsModel::detach() {
  beginResetModel();
  ids_.clear();
  list_ = nullptr;
  endResetModel();
}

int RowsModel::rowAt(const QModelIndex& index) const {
  const auto place = static_cast<std::size_t>(index.row());
  const int row = index.row() + 1;
  if (!index.isValid() || place >= ids_.size() || row > list_->count()) return 0;
  return list_->id(row) == ids_[place] ? row : 0;
}

int RowsModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(ids_.size());
}

int RowsModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() || !list_ ? 0 : static_cast<int>(seen_.size());
}

const std::string& RowsModel::textAt(int row, int column) const {
  return column == 0 ? list_->text(row) : list_->subItem(row, column);
}

QString RowsModel::wordsOf(int row, int column) const {
  return column == 0 && words ? words(row) : QString();
}

QVariant RowsModel::data(const QModelIndex& index, int role) const {
  const int row = rowAt(index);
  if (row == 0) return {};
  const int column = columnAt(index.column());
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return shown(textAt(row, column));
    case Qt::AccessibleTextRole: {
      const QString said = wordsOf(row, column);
      const QString text = shown(textAt(row, column));
      if (text.isEmpty()) return said.isEmpty() ? tr("empty") : said;
      return said.isEmpty() ? text : text + QStringLiteral(", ") + said;
    }
    case Qt::AccessibleDescriptionRole:
      return wordsOf(row, column);
    case Qt::ToolTipRole: {
      const QString said = wordsOf(row, column);
      const QString text = shown(textAt(row, column));
      return said.isEmpty() ? text : text + QLatin1Char('\n') + said;
    }
    case Qt::CheckStateRole:
      if (!list_->checkBoxes || column != 0) return {};
      return list_->checked(row) ? Qt::Checked : Qt::Unchecked;
    case Qt::UserRole:
      return list_->colour(row);
    case Qt::UserRole + 1:
      return list_->smallIcon(row);
    default:
      return {};
  }
}

bool RowsModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  const int row = rowAt(index);
  if (row == 0) return false;
  if (role == Qt::CheckStateRole && checked) {
    checked(list_->id(row), value.toInt() == Qt::Checked);
    return true;
  }
  if (role != Qt::EditRole || !renamed) return false;
  // A name that was not touched stays as it is, also where it holds bytes that cannot be shown.
  const std::string& old = list_->text(row);
  const QString text = value.toString();
  renamed(list_->id(row), text == shown(old) ? old : typed(text));
  return true;
}

QVariant RowsModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || !list_ || section >= columnCount()) return {};
  if (role == Qt::TextAlignmentRole) return int{Qt::AlignLeft | Qt::AlignVCenter};
  const int column = columnAt(section);
  const std::string& title = list_->columns()[static_cast<std::size_t>(column)].title;
  switch (role) {
    case Qt::DisplayRole:
      return captioned(title);
    case Qt::AccessibleTextRole:
      if (!list_->sorted() || column != list_->sortKey()) return spoken(title);
      return (list_->sortOrder() == SortOrder::ascending ? tr("%1, sorted ascending")
                                                         : tr("%1, sorted descending"))
          .arg(spoken(title));
    case Qt::ToolTipRole:
    case Qt::AccessibleDescriptionRole:
      if (!list_->columnClick) return {};
      return tr("To sort, click or press Ctrl and the number of the column");
    default:
      return {};
  }
}

Qt::ItemFlags RowsModel::flags(const QModelIndex& index) const {
  Qt::ItemFlags flags = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
  if (!list_ || index.column() != 0) return flags;
  if (list_->labelEdit && list_->afterLabelEdit) flags |= Qt::ItemIsEditable;
  if (list_->checkBoxes && list_->itemCheck) flags |= Qt::ItemIsUserCheckable;
  return flags;
}

}  // namespace skv::ui::qt
