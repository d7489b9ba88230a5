#include "aircraft/aircraft_views.h"

#include <algorithm>

#include "aircraft/aircraft_cfg.h"
#include "aircraft/empty_lists.h"
#include "aircraft/list_files.h"
#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/folder_guard.h"
#include "core/stores.h"
#include "core/view.h"
#include "pictures/shown_pictures.h"

namespace skv {

namespace {

// The Hangar with its two own folders, which the installer fills but does not make. None is made in
// the place of one that a disk which is away would show.
void makeHangar(App& app) {
  FileSystem& files = app.files();
  if (!folderExists(files, app.HangarDir)) {
    if (!mayBeMadeUnasked(app, app.HangarDir)) return;
    MakePath(files, app.HangarDir);
  }
  for (const std::string& folder : {aircraftRootOf(app.HangarDir), mainRootOf(app.HangarDir)})
    files.makeFolder(folder).skipped();
}

struct Remembered {
  int& row;
  std::string& folder;
};

Remembered rememberedIn(App& app, View view) {
  if (view == View::hangar) return {app.HangarSelIndex, app.HangarSelFolder};
  return {app.FSSelIndex, app.FSSelFolder};
}

void loadLists(App& app, View view) {
  const bool hangar = view == View::hangar;
  app.listedView = view;
  app.ListDir = hangar ? app.HangarDir : app.FSRoot;
  app.ACRoot = aircraftRootOf(app.ListDir);
  if (hangar) makeHangar(app);
  ClearInfoTab(app);
  LoadACList(app);
  LoadPNList(app);
  LoadSNList(app);
  fillEmptyTexts(app);
  const auto [row, folder] = rememberedIn(app, view);
  selectAircraft(app, folder, row);
}

void showAircraftView(App& app, View view) {
  // Until the yield is over, all on screen is the view that is being left; afterwards nothing
  // comes between the frames, the captions and the rows of the new one.
  const unsigned switches = app.viewSwitches;
  app.windows.yield();
  if (app.viewSwitches != switches || !mayLeaveInfo(app) || app.viewSwitches != switches) return;
  rememberAircraft(app);
  const bool fromScenery = app.frmMain.frameScenery.visible;
  showView(app, view);
  clearAircraftPictures(app);
  loadLists(app, view);
  if (fromScenery) app.windows.setFocus(app.frmMain.lstAircraft);
}

}  // namespace

void mnuViewFSAircraft_Click(App& app) { showAircraftView(app, View::fsAircraft); }
void mnuViewHangar_Click(App& app) { showAircraftView(app, View::hangar); }

bool reloadAircraftList(App& app) {
  if (app.starting) return true;  // the first view is still to come
  if (!mayLeaveInfo(app)) return false;
  rememberAircraft(app);
  loadLists(app, app.aircraftView);
  return true;
}

void selectAircraft(App& app, const std::string& folder, int fallbackRow) {
  auto& list = app.frmMain.lstAircraft;
  int row = std::clamp(fallbackRow, 0, list.count());
  // Of several rows of one folder, the one that it was.
  const bool same = row != 0 && equalsIgnoringCase(list.subItem(row, 1), folder);
  if (const int found = same ? 0 : list.findSubItem1(folder); found != 0 && !folder.empty())
    row = found;
  if (row != 0) list.select(row);
  list.ensureVisible(list.selected());
  lstAircraft_Click(app);
}

void rememberAircraft(App& app) {
  const auto& list = app.frmMain.lstAircraft;
  if (list.count() == 0) return;
  const auto [row, folder] = rememberedIn(app, app.listedView);
  row = list.selected();
  folder = selectedAircraftFolder(app);
}

}  // namespace skv
