#include "ui/model/list_view.h"

#include <gtest/gtest.h>

#include "base/text.h"
#include "support/text.h"

namespace skv::test {

class ListViewTest : public ::testing::Test {
 protected:
  void add(const std::string& folder) { list.add(folder, {folder}); }
  // What the index answers, by a look through all rows.
  int looked(const std::string& folder) const {
    for (int row = 1; row <= list.count(); ++row)
      if (equalsIgnoringCase(list.subItem(row, 1), folder)) return row;
    return 0;
  }

  ui::ListView list{"list", {{"Name", 100}, {"Folder", 100}}};
};

TEST_F(ListViewTest, AScanFindsEachRowWhateverBecameOfTheOthers) {
  const std::vector<std::pair<const char*, std::function<void()>>> steps = {
      {"insert", [this] { list.insert(1, "new", {"new"}); }},
      {"remove", [this] { list.remove(2); }},
      {"remove the last", [this] { list.remove(list.count()); }},
      {"another folder", [this] { list.setSubItem(1, 1, "moved"); }},
      {"sort", [this] { list.sort(1, ui::SortOrder::descending); }},
      {"swap", [this] { list.swapRows(1, 2); }},
      {"add", [this] { add("late"); }},
      {"add one that stands", [this] { add("D"); }},
      {"clear", [this] { list.clear(); }}};
  for (const char* folder : {"a", "b", "c", "d", "B", "e"}) add(folder);
  for (const auto& [what, step] : steps) {
    const auto before = list.findSubItem1("b");  // the index is there
    step();
    for (const char* folder : {"a", "B", "C", "d", "e", "new", "moved", "late", "none"})
      EXPECT_EQ(list.findSubItem1(folder), looked(folder)) << what << ", " << folder << before;
  }
}

TEST_F(ListViewTest, TheSelectionStaysWithItsRowOrGoesToTheNextOne) {
  const struct {
    int selected, removed, left;
  } cases[] = {{1, 3, 1}, {3, 1, 2}, {2, 2, 2}, {4, 4, 3}, {0, 2, 0}};
  for (const auto& [selected, removed, left] : cases) {
    list.clear();
    for (const char* folder : {"a", "b", "c", "d"}) add(folder);
    list.select(selected);
    list.remove(removed);
    EXPECT_EQ(list.selected(), left) << selected << " selected, " << removed << " removed";
  }
  while (list.count() > 0) list.remove(1);
  EXPECT_EQ(list.selected(), 0);
  add("a");
  EXPECT_EQ(list.selected(), 1) << "the first row of an empty list";
}

}  // namespace skv::test
