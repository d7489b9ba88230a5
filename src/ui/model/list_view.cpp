#include "ui/model/list_view.h"

#include <algorithm>
#include <numeric>

#include "base/text.h"

namespace skv::ui {

namespace {
const std::string noText;
}

ListView::ListView(std::string name, std::vector<Column> columns)
    : Control(std::move(name)), columns_(std::move(columns)) {}

void ListView::setColumnWidth(int column, int width) {
  const auto i = static_cast<std::size_t>(column);
  if (column < 0 || i >= columns_.size() || width <= 0 || columns_[i].width == 0) return;
  if (columns_[i].width == width) return;
  columns_[i].width = width;
  changed();
}

int ListView::add(std::string text, std::vector<std::string> subItems) {
  Row row;
  row.text = std::move(text);
  row.subItems = std::move(subItems);
  row.id = nextId_++;
  rows_.push_back(std::move(row));
  if (indexed_) index_.try_emplace(upper(subItem(count(), 1)), count());
  if (count() == 1) selected_ = 1;
  changed();
  return count();
}

void ListView::insert(int row, std::string text, std::vector<std::string> subItems) {
  Row inserted;
  inserted.text = std::move(text);
  inserted.subItems = std::move(subItems);
  inserted.id = nextId_++;
  rows_.insert(rows_.begin() + (row - 1), std::move(inserted));
  indexed_ = false;
  if (count() == 1)
    selected_ = 1;
  else if (selected_ >= row)
    ++selected_;
  changed();
}

void ListView::remove(int row) {
  rows_.erase(rows_.begin() + (row - 1));
  indexed_ = false;
  if (selected_ > row) --selected_;
  selected_ = std::min(selected_, count());
  changed();
}

void ListView::clear() {
  rows_.clear();
  indexed_ = false;
  selected_ = 0;
  changed();
}

void ListView::setText(int row, std::string text) {
  at(row).text = std::move(text);
  changed();
}

const std::string& ListView::subItem(int row, int index) const {
  const auto& subItems = at(row).subItems;
  const auto i = static_cast<std::size_t>(index - 1);
  return i < subItems.size() ? subItems[i] : noText;
}

void ListView::setSubItem(int row, int index, std::string text) {
  auto& subItems = at(row).subItems;
  const auto i = static_cast<std::size_t>(index - 1);
  if (subItems.size() <= i) subItems.resize(i + 1);
  subItems[i] = std::move(text);
  if (index == 1) indexed_ = false;
  changed();
}

void ListView::setSmallIcon(int row, int icon) {
  at(row).smallIcon = icon;
  changed();
}

void ListView::setChecked(int row, bool checked) {
  at(row).checked = checked;
  changed();
}

void ListView::setColour(int row, Colour colour) {
  at(row).colour = colour;
  changed();
}

int ListView::rowOf(RowId id) const {
  const auto found = std::ranges::find(rows_, id, &Row::id);
  return found == rows_.end() ? 0 : static_cast<int>(found - rows_.begin()) + 1;
}

int ListView::findSubItem1(std::string_view text) const {
  if (!indexed_) {
    index_.clear();
    index_.reserve(rows_.size());
    for (int row = 1; row <= count(); ++row) index_.try_emplace(upper(subItem(row, 1)), row);
    indexed_ = true;
  }
  const auto found = index_.find(upper(text));
  return found == index_.end() ? 0 : found->second;
}

void ListView::select(int row) {
  if (row < 0 || row > count()) row = 0;
  if (row == selected_) return;
  selected_ = row;
  changed();
}

void ListView::ensureVisible(int row) {
  if (row < 1 || row > count()) return;
  visibleRow_ = row;
  ++visibleWishes_;
  changed();
}

void ListView::startLabelEdit() {
  if (!labelEdit || selected_ == 0) return;
  ++labelEditWishes_;
  changed();
}

void ListView::sort(int column, SortOrder order) {
  std::vector<std::string> keys;
  keys.reserve(rows_.size());
  for (int row = 1; row <= count(); ++row)
    keys.push_back(upper(column == 0 ? text(row) : subItem(row, column)));
  std::vector<std::size_t> places(rows_.size());
  std::iota(places.begin(), places.end(), std::size_t{0});
  std::ranges::stable_sort(places, [&](std::size_t a, std::size_t b) {
    return order == SortOrder::ascending ? keys[a] < keys[b] : keys[b] < keys[a];
  });

  const RowId selectedId = selected_ == 0 ? 0 : id(selected_);
  std::vector<Row> ordered;
  ordered.reserve(rows_.size());
  for (const std::size_t place : places) ordered.push_back(std::move(rows_[place]));
  rows_ = std::move(ordered);
  indexed_ = false;
  sorted_ = true;
  sortKey_ = column;
  sortOrder_ = order;
  if (selectedId != 0) selected_ = rowOf(selectedId);
  changed();
}

void ListView::swapRows(int a, int b) {
  if (a == b) return;
  std::swap(at(a), at(b));
  indexed_ = false;
  if (selected_ == a)
    selected_ = b;
  else if (selected_ == b)
    selected_ = a;
  changed();
}

}  // namespace skv::ui
