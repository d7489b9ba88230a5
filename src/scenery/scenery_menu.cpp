#include "scenery/scenery_menu.h"

#include "core/messages.h"
#include "core/stores.h"
#include "scenery/scenery_places.h"
#include "scenery/scenery_row.h"

namespace skv {

namespace {

// "" without a selected row that has a folder.
std::string selectedFolder(const ui::ListView& list) {
  return list.selected() == 0 ? std::string()
                              : list.subItem(list.selected(), sceneryColumn::Folder);
}

std::string areaFolder(const App& app) {
  const std::string Folder = selectedFolder(app.frmMain.lstScenery);
  return Folder.empty() ? Folder : sceneryFolder(app, Folder) + "\\";
}

std::string libraryFolder(const App& app) {
  const std::string leaf = leafOf(selectedFolder(app.frmMain.lstInactScenery));
  return leaf.empty() ? leaf : sceneryRootOf(app.SceneryLib) + leaf + "\\";
}

void open(App& app, const std::string& folder) {
  if (!folder.empty()) ShellOpen(app, folder);
}

void copy(App& app, const std::string& folder) {
  if (!folder.empty()) app.windows.copyText(folder);
}

}  // namespace

void mnuSCOpen_Click(App& app) { open(app, areaFolder(app)); }
void mnuSCCopy_Click(App& app) { copy(app, areaFolder(app)); }
void mnuSLOpen_Click(App& app) { open(app, libraryFolder(app)); }
void mnuSLCopy_Click(App& app) { copy(app, libraryFolder(app)); }

}  // namespace skv
