#include "scenery/scenery_order.h"

#include <algorithm>
#include <cstdlib>

#include "base/paths.h"
#include "core/long_operation.h"
#include "core/stores.h"
#include "pictures/shown_pictures.h"
#include "scenery/scenery_database.h"
#include "scenery/scenery_places.h"
#include "scenery/scenery_row.h"

namespace skv {

namespace {

void showPictureIn(App& app, const std::string& folder) {
  app.frmMain.imgScenery.tag = folder;
  showSceneryPicture(app);
}

// Distinct layers in the order of the rows, as wide as the longest, since they are sorted as text.
void numberByPosition(ui::ListView& list) {
  const int count = list.count();
  const std::size_t width = std::max(sortLayer("0").size(), std::to_string(count).size());
  for (int row = 1; row <= count; ++row) {
    const std::string number = std::to_string(count - row + 1);
    list.setSubItem(row, sceneryColumn::SortLayer,
                    std::string(width - number.size(), '0') + number);
  }
}

// Whether the row and its neighbour have changed places.
bool exchange(ui::ListView& list, int row, int neighbour) {
  if (row == 0 || neighbour < 1 || neighbour > list.count()) return false;
  const auto layerOf = [&list](int one) { return list.subItem(one, sceneryColumn::SortLayer); };
  if (layerOf(row) == layerOf(neighbour)) numberByPosition(list);
  const std::string layer = layerOf(row);
  const std::string other = layerOf(neighbour);
  list.setSubItem(row, sceneryColumn::SortLayer, other);
  list.setSubItem(neighbour, sceneryColumn::SortLayer, layer);
  list.swapRows(row, neighbour);
  return true;
}

}  // namespace

void btnSCup_Click(App& app) { lstScenery_Move(app, -1); }
void btnSCdn_Click(App& app) { lstScenery_Move(app, 1); }

void lstScenery_Move(App& app, int steps) {
  auto& list = app.frmMain.lstScenery;
  const int step = steps < 0 ? -1 : 1;
  int left = std::abs(steps);
  while (left > 0 && exchange(list, list.selected(), list.selected() + step)) --left;
  list.ensureVisible(list.selected());
  app.windows.setFocus(list);
}

void btnFSScenerySave_Click(App& app) {
  const LongOperation busy(app);
  SaveSceneryCfg(app);
  app.frmMain.lblStatus.caption = "";
}

void lstScenery_ItemClick(App& app) {
  const auto& list = app.frmMain.lstScenery;
  const int row = list.selected();
  if (row == 0) {
    showNoScenery(app);
    return;
  }
  app.frmMain.lblSceneryTitle.caption = list.text(row);
  showPictureIn(app, sceneryFolder(app, list.subItem(row, sceneryColumn::Folder)) + "\\");
}

void lstInactScenery_ItemClick(App& app) {
  const auto& list = app.frmMain.lstInactScenery;
  const int row = list.selected();
  if (row == 0) {
    showNoScenery(app);
    return;
  }
  app.frmMain.lblSceneryTitle.caption = list.text(row);
  const std::string& folder = list.subItem(row, sceneryColumn::Folder);
  if (!folder.empty()) showPictureIn(app, sceneryRootOf(app.SceneryLib) + leafOf(folder) + "\\");
}

void ftreeScenery_SelectionChange(App& app) {
  const std::string& folder = app.frmMain.ftreeScenery.folder;
  if (folder.empty()) return;
  app.frmMain.lblSceneryTitle.caption = withoutBackslash(folder);
  showPictureIn(app, withBackslash(folder));
}

void showNoScenery(App& app) {
  app.frmMain.lblSceneryTitle.caption = "";
  showPictureIn(app, "");
}

}  // namespace skv
