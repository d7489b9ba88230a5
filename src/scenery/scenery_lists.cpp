#include "scenery/scenery_lists.h"

#include "base/day_count.h"
#include "core/disk_queries.h"
#include "core/list_store.h"
#include "scenery/scenery_database.h"
#include "scenery/scenery_list_files.h"
#include "scenery/scenery_order.h"
#include "scenery/scenery_places.h"
#include "scenery/scenery_row.h"

namespace skv {

namespace {

std::string cacheFile(const App& app) { return app.FSRoot + sceneryCacheFile; }

double dayCountOf(const FileState& file) {
  return localDayCount(file.modified.seconds, file.modified.nanoseconds);
}

std::vector<SceneryRow> rowsOf(const ui::ListView& list) {
  std::vector<SceneryRow> rows;
  for (int row = 1; row <= list.count(); ++row) rows.push_back(rowAt(list, row));
  return rows;
}

void selectTop(App& app) {
  auto& list = app.frmMain.lstScenery;
  if (list.count() == 0) return;
  list.select(1);
  list.ensureVisible(1);
  lstScenery_ItemClick(app);
}

bool fillFromDatabase(App& app) {
  if (!LoadSceneryCfgList(app)) return false;
  SaveSceneryList(app);
  return true;
}

// Whether the cache was made for the file as it is now. Times are compared as the cache stores
// them, for being different and not for their order: an older file is another one, too.
bool isCurrent(App& app, const SceneryCache& cache, const Result<FileState>& file) {
  app.SceneryCfgStamp = cache.stamp;
  return file.ok() && cache.stamp != 0 && val(decimal(dayCountOf(file.value()))) == cache.stamp;
}

void fillFromCache(App& app, const SceneryCache& cache, const FileState& file) {
  auto& list = app.frmMain.lstScenery;
  for (const SceneryRow& row : cache.rows) {
    const int added = addRow(list, row);
    list.setChecked(added, row.active);
    if (IsBuiltInArea(row)) list.setColour(added, builtInColour);
  }
  app.sceneryDatabase.read = true;
  app.sceneryDatabase.was = file;
  findUnreachedAreas(app);
}

}  // namespace

void LoadSceneryList(App& app) {
  auto& list = app.frmMain.lstScenery;
  const std::string database = app.FSRoot + sceneryCfgFile;
  list.clear();
  showNoScenery(app);
  // An older load, which this one ends, may have hidden the list.
  list.visible = true;
  app.frmMain.lblListLoading.visible = false;
  app.sceneryDatabase = {.file = database, .loads = app.sceneryDatabase.loads + 1};
  app.CfgCacheSize.clear();
  app.CfgCleanOnExit.clear();
  if (app.FSRoot.empty()) return;

  const auto bytes = app.files().readFile(cacheFile(app));
  if (!bytes.ok() && presenceBy(bytes.outcome()) == Presence::absent) {
    if (!fillFromDatabase(app)) return;
    app.windows.yield();
    selectTop(app);
    return;
  }
  const SceneryCache cache = parseSceneryCache(bytes.valueOr({}), app.codePage);
  const auto file = app.files().fileState(database);
  if (!isCurrent(app, cache, file)) {
    if (fillFromDatabase(app)) list.select(0);
    return;
  }
  fillFromCache(app, cache, file.value());
  sortByLayer(list);
  noteSceneriesSaved(app);
  selectTop(app);
}

void SaveSceneryList(App& app) {
  const auto& file = app.sceneryDatabase.was;
  app.SceneryCfgStamp = file ? dayCountOf(*file) : 0;
  if (!file) return;
  const SceneryCache cache{app.SceneryCfgStamp, rowsOf(app.frmMain.lstScenery)};
  app.files().replaceFile(cacheFile(app), sceneryCacheBytes(cache, app.codePage)).skipped();
}

void LoadSceneryLibList(App& app) {
  auto& list = app.frmMain.lstInactScenery;
  list.clear();
  app.librarySource = {};
  if (app.SceneryLib.empty()) return;
  const std::string file = app.SceneryLib + sceneryLibraryFile;
  const auto bytes = loadListFile(app, app.librarySource, file);
  if (!bytes.ok()) {
    if (presenceOf(app.files(), app.SceneryLib) != Presence::absent)
      tellListFailure(app, "read", file, bytes.outcome());
    return;
  }
  for (const SceneryRow& row : parseSceneryLibrary(bytes.value(), app.codePage)) addRow(list, row);
  showLibraryPlaces(app);
}

void showLibraryPlaces(App& app) {
  auto& list = app.frmMain.lstInactScenery;
  SceneryPlaces places(app);
  for (int row = 1; row <= list.count(); ++row)
    if (const std::string& Folder = list.subItem(row, sceneryColumn::Folder); !Folder.empty())
      list.setSmallIcon(row, places.icon(Folder));
}

bool SaveSceneryLibList(App& app) {
  const std::string file = app.SceneryLib + sceneryLibraryFile;
  const Outcome saved =
      saveListFile(app, app.librarySource, file,
                   sceneryLibraryBytes(rowsOf(app.frmMain.lstInactScenery), app.codePage));
  if (!saved.ok()) tellListFailure(app, "saved", file, saved);
  return saved.ok();
}

}  // namespace skv
