#include "scenery/scenery_options.h"

#include <algorithm>

#include "core/list_store.h"
#include "core/messages.h"
#include "scenery/scenery_lists.h"
#include "scenery/scenery_row.h"

namespace skv {

namespace {

constexpr int shownValues = 9;
constexpr int yieldsAtLoad = 100;

void show(ui::ListView& list, const std::string& column) {
  const auto values = split(column, valueSeparator);
  const int count = std::min(shownValues, static_cast<int>(values.size()));
  for (int row = 1; row <= count; ++row)
    list.setText(row, values[static_cast<std::size_t>(row - 1)]);
}

// The column's new text: the values of the dialog without gaps, and those that it did not show.
std::string edited(const ui::ListView& list, const std::string& column) {
  std::vector<std::string> values;
  for (int row = 1; row <= list.count(); ++row) values.push_back(list.text(row));
  const auto before = split(column, valueSeparator);
  if (before.size() > shownValues)
    values.insert(values.end(), before.begin() + shownValues, before.end());
  std::string text;
  for (const std::string& value : values)
    if (!value.empty()) text += (text.empty() ? "" : std::string(1, valueSeparator)) + value;
  return text;
}

void take(App& app, ui::ListView& list, bool& cancel, const std::string& newString) {
  const int row = list.selected();
  if (row == 0) return;
  std::string value = inOneField(composed(newString));
  std::ranges::replace(value, valueSeparator, ' ');
  if (const std::string lacking = app.codePage.lacking(value); !lacking.empty()) {
    app.windows.messageBox({notStorable(value, lacking), ui::BoxIcon::exclamation});
    return;
  }
  cancel = false;
  list.setText(row, trim(value));
}

void close(App& app, bool cancelled) {
  app.frmSCOptions.Cancelled = cancelled;
  app.windows.hide(app.frmSCOptions);
}

}  // namespace

void lstInactScenery_DblClick(App& app) {
  auto& library = app.frmMain.lstInactScenery;
  auto& dialog = app.frmSCOptions;
  if (library.selected() == 0 || dialog.visible) return;
  const auto id = library.id(library.selected());
  frmSCOptions_Form_Load(app);
  int row = library.rowOf(id);
  if (row == 0) return;
  show(dialog.lstFlatten, library.subItem(row, sceneryColumn::Flatten));
  show(dialog.lstExclude, library.subItem(row, sceneryColumn::Exclude));
  app.windows.showModal(dialog, &app.frmMain);
  row = library.rowOf(id);
  if (!dialog.Cancelled && row != 0) {
    for (const auto& [column, list] : {std::pair(sceneryColumn::Flatten, &dialog.lstFlatten),
                                       std::pair(sceneryColumn::Exclude, &dialog.lstExclude)})
      library.setSubItem(row, column, edited(*list, library.subItem(row, column)));
  }
  app.windows.unload(dialog);
  if (!dialog.Cancelled && row != 0) SaveSceneryLibList(app);
}

void frmSCOptions_Form_Load(App& app) {
  auto& dialog = app.frmSCOptions;
  dialog.Cancelled = true;  // until OK is pressed
  app.windows.yieldTimes(yieldsAtLoad);
  for (ui::ListView* list : {&dialog.lstFlatten, &dialog.lstExclude}) {
    list->clear();
    for (int row = 0; row < shownValues; ++row) list->add("");
  }
}

void lstFlatten_AfterLabelEdit(App& app, bool& cancel, const std::string& newString) {
  take(app, app.frmSCOptions.lstFlatten, cancel, newString);
}

void lstExclude_AfterLabelEdit(App& app, bool& cancel, const std::string& newString) {
  take(app, app.frmSCOptions.lstExclude, cancel, newString);
}

void frmSCOptions_btnOK_Click(App& app) { close(app, false); }
void frmSCOptions_btnCancel_Click(App& app) { close(app, true); }

}  // namespace skv
