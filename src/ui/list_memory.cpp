#include "ui/list_memory.h"

#include <array>

#include "core/settings_keys.h"

namespace skv {

namespace {

constexpr int leastWidth = 150, greatestWidth = 30000;      // twips
constexpr int leastHeight = 1000, greatestHeights = 60000;  // twips

std::array<ui::ListView*, 6> listsOf(App& app) {
  auto& form = app.frmMain;
  return {&form.lstAircraft,   &form.lstPanel,   &form.lstSound,
          &form.lstACVersions, &form.lstScenery, &form.lstInactScenery};
}

std::array<ui::Divider*, 5> dividersOf(App& app) {
  auto& form = app.frmMain;
  return {&form.divAircraft, &form.divInfo, &form.divPanel, &form.divSound, &form.divScenery};
}

// "6350,2117": the columns in their order.
std::string widthsOf(const ui::ListView& list) {
  std::string text;
  for (const ui::ListView::Column& column : list.columns())
    text += (text.empty() ? "" : ",") + std::to_string(column.width);
  return text;
}

void restoreWidths(ui::ListView& list, const std::string& text) {
  const std::vector<std::string> widths = split(text, ',');
  if (widths.size() != list.columns().size()) return;
  for (std::size_t i = 0; i < widths.size(); ++i) {
    const double width = val(widths[i]);
    if (width >= leastWidth && width <= greatestWidth)
      list.setColumnWidth(static_cast<int>(i), static_cast<int>(width));
  }
}

}  // namespace

void storeLists(App& app) {
  for (const ui::ListView* list : listsOf(app))
    writeSetting(app, {setting::lists, list->name().c_str()}, widthsOf(*list)).skipped();
  for (const ui::Divider* divider : dividersOf(app))
    writeSetting(app, {setting::lists, divider->name().c_str()}, std::to_string(divider->share))
        .skipped();
  const auto& form = app.frmMain;
  if (form.sceneryHeight != 0)  // the window has laid them out
    writeSetting(app, {setting::lists, form.lblSepBar.name().c_str()},
                 std::to_string(form.sceneryHeight) + "," + std::to_string(form.libraryHeight))
        .skipped();
  const auto& aircraft = app.frmMain.lstAircraft;
  const bool sorted = aircraft.sorted();
  writeSetting(app, setting::SortKey, sorted ? std::to_string(aircraft.sortKey()) : "").skipped();
  writeSetting(app, setting::SortOrder,
               sorted ? std::to_string(static_cast<int>(aircraft.sortOrder())) : "")
      .skipped();
}

void restoreLists(App& app) {
  for (ui::ListView* list : listsOf(app))
    restoreWidths(*list, readSetting(app, {setting::lists, list->name().c_str()}));
  for (ui::Divider* divider : dividersOf(app)) {
    const double share = val(readSetting(app, {setting::lists, divider->name().c_str()}));
    if (share > 0 && share < 1000) divider->share = static_cast<int>(share);
  }
  auto& form = app.frmMain;
  const auto heights =
      split(readSetting(app, {setting::lists, form.lblSepBar.name().c_str()}), ',');
  if (heights.size() != 2) return;
  const double upper = val(heights[0]), lower = val(heights[1]);
  if (upper < leastHeight || lower < leastHeight || upper + lower > greatestHeights) return;
  form.sceneryHeight = static_cast<int>(upper);
  form.libraryHeight = static_cast<int>(lower);
}

void restoreOrder(App& app) {
  auto& list = app.frmMain.lstAircraft;
  const std::string key = readSetting(app, setting::SortKey);
  const double column = val(key);
  if (key.empty() || column < 0 || column >= static_cast<double>(list.columns().size())) return;
  list.sort(static_cast<int>(column), val(readSetting(app, setting::SortOrder)) == 1
                                          ? ui::SortOrder::descending
                                          : ui::SortOrder::ascending);
}

}  // namespace skv
