#include "ui/model/list_view.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace skv::test {

// Every change of rows, in any order: the index by which scans find rows tells the first one, a row
// that is held by its id is found, and the selection stays with its row.
TEST(ListViewTest, RowsAreFoundAndStaySelectedWhateverChanges) {
  ui::ListView list("lst", {{"Name:", 1}, {"Folder:", 1}});
  std::mt19937 random(19);  // NOLINT(cert-msc51-cpp): the same rows each time
  const auto below = [&](int count) { return static_cast<int>(random() % unsigned(count)); };
  const auto folder = [&] { return "C:\\" + std::to_string(below(12)) + "\\"; };
  for (int step = 0; step < 3000; ++step) {
    const int count = list.count(), row = below(std::max(count, 1)) + 1, what = below(8);
    ui::ListView::RowId kept = list.selected() == 0 ? 0 : list.id(list.selected());
    if (count < 3 || what == 0) {
      list.add("x", {folder()});
    } else if (what == 1) {
      list.insert(row, "x", {folder()});
    } else if (what == 2) {
      const ui::ListView::RowId gone = list.id(row);
      if (gone == kept) kept = list.id(row < count ? row + 1 : row - 1);
      list.remove(row);
      ASSERT_TRUE(list.rowOf(gone) == 0 && list.count() == count - 1);
    } else if (what == 3) {
      list.setSubItem(row, 1, folder());
    } else if (what == 4) {
      list.swapRows(row, below(count) + 1);
    } else if (what == 5) {
      list.sort(1, ui::SortOrder::descending);
    } else if (what == 6) {
      kept = list.id(row);
      list.select(row);
    } else if (step % 9 == 0) {
      list.clear();
      kept = 0;
    }
    const std::string sought = folder();
    int first = 0;
    for (int each = list.count(); each > 0; --each) {
      ASSERT_EQ(list.rowOf(list.id(each)), each);
      if (list.subItem(each, 1) == sought) first = each;
    }
    ASSERT_EQ(list.findSubItem1(sought), first);
    ASSERT_TRUE(kept == 0 || list.selected() == list.rowOf(kept)) << step;
  }
}

}  // namespace skv::test
