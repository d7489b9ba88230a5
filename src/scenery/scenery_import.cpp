#include "scenery/scenery_import.h"

#include <unordered_set>
#include <utility>
#include <vector>

#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/long_operation.h"
#include "core/stores.h"
#include "scenery/scenery_arrival.h"
#include "scenery/scenery_guard.h"
#include "scenery/scenery_lists.h"
#include "scenery/scenery_places.h"
#include "scenery/scenery_row.h"

namespace skv {

namespace {

bool isAddonFolder(const std::string& folder) {
  return upper(folder).starts_with(upper(withoutBackslash(addonScenery)));
}

bool isAddon(const SceneryRow& area) {
  const std::string store = upper(withoutBackslash(addonScenery));
  return isAddonFolder(area.Folder) || upper(area.RemPath).find(store) != std::string::npos;
}

// Whether an add-on's area has a folder of its own, by which the library can know it.
bool hasOwnFolder(const SceneryRow& area) {
  return !area.Folder.empty() && upper(area.Folder) != upper(withoutBackslash(addonScenery));
}

// Rows are held by their ids: the import yields all the time.
class Import {
 public:
  explicit Import(App& app) : app_(app), library_(app.SceneryLib), places_(app) {}

  void run() {
    auto& areas = app_.frmMain.lstScenery;
    std::vector<ui::ListView::RowId> ids;
    for (int row = 1; row <= areas.count(); ++row)
      if (const SceneryRow area = rowAt(areas, row); isAddon(area) && hasOwnFolder(area))
        ids.push_back(areas.id(row));
    if (!knowWhatIsListed(ids)) return;
    const LongOperation busy(app_);
    makeLibraryRoots(app_, library_);
    for (const auto id : ids) {
      const int row = areas.rowOf(id);
      if (row == 0) continue;
      areas.ensureVisible(row);
      if (!import(rowAt(areas, row)) || app_.stopRequested) break;
    }
    areas.ensureVisible(areas.selected());
    SaveSceneryLibList(app_);
    tell();
    app_.frmMain.lblStatus.caption = "";
  }

 private:
  // Asks about the sceneries that have a row. False when nothing is to be done.
  bool knowWhatIsListed(const std::vector<ui::ListView::RowId>& ids) {
    const auto& library = app_.frmMain.lstInactScenery;
    for (int row = 1; row <= library.count(); ++row)
      leaves_.insert(upper(leafOf(library.subItem(row, sceneryColumn::Folder))));
    const auto& areas = app_.frmMain.lstScenery;
    std::string names;
    int count = 0;
    for (const auto id : ids) {
      const SceneryRow area = rowAt(areas, areas.rowOf(id));
      if (!isListed(area)) continue;
      ++count;
      names += area.Name + ": " + area.Folder + "\r\n";
    }
    if (count == 0) return true;
    const ui::Answer answer = app_.windows.messageBox(
        {.text =
             "The library lists " + std::to_string(count) + " of the " +
             std::to_string(ids.size()) +
             " sceneries already. Do you want to list them a second time?\r\n\r\nNo copies only "
             "what the library lacks.",
         .icon = ui::BoxIcon::question,
         .buttons = ui::BoxButtons::yesNoCancel,
         .defaultButton = ui::DefaultButton::no,
         .details = names});
    if (answer == ui::Answer::yes) leaves_.clear();
    return answer != ui::Answer::cancel;
  }

  bool isListed(const SceneryRow& area) const {
    return leaves_.contains(upper(leafOf(area.Folder)));
  }

  // False ends the import.
  bool import(const SceneryRow& area) {
    if (isListed(area)) return !isAddonFolder(area.Folder) || copyFiles(area, 0);
    auto& library = app_.frmMain.lstInactScenery;
    const int row = addRow(library, area);
    library.setSmallIcon(row, places_.icon(area.Folder));
    ++listed_;
    return !isAddonFolder(area.Folder) || copyFiles(area, library.id(row));
  }

  // `row`: of the library, which goes again with a failure; 0 for one that was there before.
  bool copyFiles(const SceneryRow& area, ui::ListView::RowId row) {
    FileSystem& files = app_.files();
    const std::string leaf = leafOf(area.Folder);
    const std::string source = sceneryFolder(app_, area.Folder);
    const std::string target = sceneryRootOf(library_) + leaf;
    Outcome may = leafMayBeUsed(app_, leaf);
    if (may.ok()) may = mayBeCopied(app_, source);
    if (may.ok()) may = mayBeFilled(app_, {target, sceneryRootOf(library_)});
    if (!may.ok() && isRefusal(may)) {
      without_ += area.Name + ": " + may.description() + "\r\n";
      return true;
    }
    WalkReport copied;
    if (!copied.note(may, source)) return end(copied, row);
    MakePath(files, mainRootOf(library_) + leaf + "\\Texture");
    MakePath(files, mainRootOf(library_) + leaf + "\\Effects");
    const auto there = files.attributes(target + "\\Scenery\\");
    if (there.ok()) return true;
    if (presenceBy(there.outcome()) == Presence::unknown) {
      copied.note(there.outcome(), target);
      return end(copied, row);
    }
    const auto found = files.attributes(source);
    if (!found.ok() && presenceBy(found.outcome()) == Presence::absent)
      without_ += area.Name + ": \"" + source + "\" is not there.\r\n";
    else if (!copied.note(found.outcome(), source))
      return end(copied, row);
    app_.frmMain.lblStatus.caption = "Copying files: " + leaf;
    const double size = sizeOf(app_, source);
    const auto room = GetDiskFree(files, library_);
    if (room.ok() && room.value() <= withMargin(size)) {
      tellNoRoom(app_, library_);
      return false;
    }
    StagedFolder scenery(app_, sceneryRootOf(library_), leaf);
    if (copied.note(room.outcome(), library_) && copied.note(scenery.make(), scenery.path()))
      arrive(app_, scenery, source, library_, copied);
    return end(copied, row);
  }

  bool end(const WalkReport& copied, ui::ListView::RowId row) {
    report_ += copied;
    if (copied.complete() || row == 0) return true;
    auto& library = app_.frmMain.lstInactScenery;
    if (const int added = library.rowOf(row); added != 0) library.remove(added);
    --listed_;
    return true;
  }

  void tell() {
    if (tellWalk(app_, report_, "copied") && listed_ + report_.done > 0)
      app_.frmMain.lblStatus.notice = std::to_string(listed_) +
                                      (listed_ == 1 ? " scenery" : " sceneries") +
                                      " imported: " + countedFiles(report_.done);
    if (!without_.empty())
      app_.windows.messageBox({.text = "Listed without their files:",
                               .icon = ui::BoxIcon::exclamation,
                               .details = without_});
  }

  App& app_;
  const std::string library_;
  SceneryPlaces places_;                    // outside the library, which alone is changed
  std::unordered_set<std::string> leaves_;  // upper case, of the sceneries that get no second row
  WalkReport report_;
  int listed_ = 0;
  std::string without_;  // a line for each scenery
};

}  // namespace

void mnuFileImportSceneries_Click(App& app) {
  if (!app.SceneryLib.empty()) Import(app).run();
}

bool hasAddonSceneries(const App& app) {
  const auto& list = app.frmMain.lstScenery;
  for (int row = 1; row <= list.count(); ++row)
    if (isAddon(rowAt(list, row))) return true;
  return false;
}

}  // namespace skv
