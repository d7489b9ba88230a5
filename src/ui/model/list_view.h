// A list in report layout: the rows are the program's data, not a copy of it.
//
// Rows count from 1, as in everything the program says and stores; 0 means "no row". Sub-items
// count from 1 as well: sub-item 1 is the second column. A row number is good until the next yield,
// message box or dialog; what must survive one is held as a RowId.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "ui/model/control.h"

namespace skv::ui {

class MenuItem;

enum class SortOrder { ascending, descending };
enum class MouseButton { left, right };

// Colours in the program's data are 0xBBGGRR numbers: 255 is red, 65280 green, 65535 yellow.
using Colour = std::uint32_t;
inline constexpr Colour defaultColour = 0;

class ListView : public Control {
 public:
  struct Column {
    std::string title;
    int width = 0;  // twips; a column of width 0 holds data and is not seen
  };
  using RowId = std::uint64_t;  // never used again after its row is gone; 0 is no row

  ListView(std::string name, std::vector<Column> columns);

  const std::vector<Column>& columns() const { return columns_; }
  // The width that the user has given to a column (from 0), in twips; one of width 0 stays unseen.
  // A front-end gives the columns their shares of the room there is.
  void setColumnWidth(int column, int width);

  int count() const { return static_cast<int>(rows_.size()); }
  // At the end, whatever the sort; answers the new row's number. The first row of an empty list
  // becomes the selected one.
  int add(std::string text, std::vector<std::string> subItems = {});
  // Before the row of that number (1 is the top, count() + 1 the end).
  void insert(int row, std::string text, std::vector<std::string> subItems = {});
  // A removed selected row hands the selection to the row that takes its place, else to the last.
  void remove(int row);
  void clear();

  const std::string& text(int row) const { return at(row).text; }
  void setText(int row, std::string text);
  // "" for a sub-item never set.
  const std::string& subItem(int row, int index) const;
  void setSubItem(int row, int index, std::string text);
  // Index into the list's pictures, from 1; 0 is no picture.
  int smallIcon(int row) const { return at(row).smallIcon; }
  void setSmallIcon(int row, int icon);
  bool checked(int row) const { return at(row).checked; }
  void setChecked(int row, bool checked);
  Colour colour(int row) const { return at(row).colour; }
  void setColour(int row, Colour colour);

  RowId id(int row) const { return at(row).id; }
  // 0 when the row is gone. Costs a look through the rows at worst; made for one row held over a
  // yield.
  int rowOf(RowId id) const;
  // The first row whose sub-item 1, without regard to case, is `text`; 0 when there is none.
  // Answered from an index that grows with the rows, so that a scan may ask for each of its files.
  int findSubItem1(std::string_view text) const;

  int selected() const { return selected_; }
  void select(int row);  // 0 takes the selection away; a row above the count selects nothing
  // The row that a front-end is to bring into view, with a count that grows at each wish.
  void ensureVisible(int row);
  int visibleRow() const { return visibleRow_; }
  unsigned visibleWishes() const { return visibleWishes_; }

  // The selected row's text is to be opened for editing in place, with a count as above.
  void startLabelEdit();
  unsigned labelEditWishes() const { return labelEditWishes_; }

  // Orders the rows by one column (0 is the text), without regard to case; equal rows keep their
  // order. Rows added later go to the end all the same. The selected row stays selected.
  void sort(int column, SortOrder order);
  // Two rows change places, whatever the sort; the selection stays with its row.
  void swapRows(int a, int b);
  // What the header shows. `sorted` is off until the first sort.
  bool sorted() const { return sorted_; }
  int sortKey() const { return sortKey_; }
  SortOrder sortOrder() const { return sortOrder_; }

  // What a front-end shows in the place of rows while there are none: a sentence for each line.
  Property<std::string> emptyText{*this};

  // Presentation, fixed by the form.
  bool checkBoxes = false;
  bool labelEdit = false;
  bool editByTyping = false;        // rows are fields: a letter, Enter or F2 opens the selected one
  MenuItem* contextMenu = nullptr;  // of the selected row; owned by the form

  // Events, raised by the front-end after it has updated the data.
  std::function<void()> click;
  std::function<void()> dblClick;               // on the selected row
  std::function<void()> itemClick;              // another row was selected by the user
  std::function<void(int column)> columnClick;  // heading, from 1; also Ctrl and its number
  std::function<void(MouseButton)> mouseDown;
  std::function<void(int row)> itemCheck;
  // The user wants the selected row in another place, `steps` rows lower (negative: higher). Where
  // it is set, rows can be dragged and moved with Ctrl+Up and Ctrl+Down.
  std::function<void(int steps)> moveSelected;
  std::function<void()> columnsChanged;  // the user has given columns other widths
  // In-place renaming has ended with `newString`; a handler that takes it clears `cancel` and sets
  // the text itself.
  std::function<void(bool& cancel, const std::string& newString)> afterLabelEdit;

 private:
  struct Row {
    std::string text;
    std::vector<std::string> subItems;
    int smallIcon = 0;
    bool checked = false;
    Colour colour = defaultColour;
    RowId id = 0;
  };
  const Row& at(int row) const { return rows_.at(static_cast<std::size_t>(row - 1)); }
  Row& at(int row) { return rows_.at(static_cast<std::size_t>(row - 1)); }

  std::vector<Column> columns_;
  std::vector<Row> rows_;
  RowId nextId_ = 1;
  int selected_ = 0;
  int visibleRow_ = 0;
  unsigned visibleWishes_ = 0;
  unsigned labelEditWishes_ = 0;
  bool sorted_ = false;
  int sortKey_ = 0;
  SortOrder sortOrder_ = SortOrder::ascending;
  // Upper-cased sub-item 1 to the first row that has it; made when asked for, kept by add(),
  // dropped by every other change of rows.
  mutable std::unordered_map<std::string, int> index_;
  mutable bool indexed_ = false;
};

}  // namespace skv::ui
