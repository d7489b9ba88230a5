#include "scenery/scenery_library.h"

#include <algorithm>
#include <utility>

#include "base/paths.h"
#include "core/addon_name.h"
#include "core/delete_folder.h"
#include "core/disk_queries.h"
#include "core/long_operation.h"
#include "core/messages.h"
#include "core/staged_folder.h"
#include "core/stores.h"
#include "core/walktree.h"
#include "scenery/scenery_guard.h"
#include "scenery/scenery_lists.h"
#include "scenery/scenery_order.h"
#include "scenery/scenery_places.h"
#include "scenery/scenery_row.h"

namespace skv {

namespace {

std::string counted(int files) { return std::to_string(files) + (files == 1 ? " file" : " files"); }

// The room that a scenery of that size needs, with a margin.
double withMargin(double size) { return size + size / 10; }

void tellNoRoom(App& app, const std::string& library) {
  app.windows.messageBox({"Insufficient diskspace on \"" + library + "\"!"});
}

// The size of a tree; what could not be measured shows when it is copied.
double sizeOf(App& app, const std::string& folder) {
  app.SizeTotal = 0;
  WalkTree(app, folder, "", WalkSize, true).skipped();
  return app.SizeTotal;
}

// The library's two roots below one that stands.
void makeRoots(App& app, const std::string& library) {
  if (!folderExists(app.files(), library)) return;
  for (const std::string& root : {sceneryRootOf(library), mainRootOf(library)})
    MakePath(app.files(), root);
}

// Copies a scenery's files to where they are complete or not at all. `report` is that of the copy.
bool arrive(App& app, StagedFolder& folder, const std::string& source, const std::string& library,
            WalkReport& report) {
  report = WalkTree(app, source, folder.path(), WalkCopy, true);
  if (report.complete()) report.note(app.files().flushDisk(library), library);
  if (report.complete()) {
    WalkReport settled = folder.settleOrMerge();
    settled.done = 0;  // the same files again
    report += settled;
  }
  if (report.complete()) report.note(app.files().flushDisk(library), library);
  if (!report.complete()) folder.clear().skipped();
  return report.complete();
}

// One click of "Add to Library". The settings and the choices may change while it yields.
class Addition {
 public:
  explicit Addition(App& app)
      : app_(app),
        source_(withBackslash(app.frmMain.ftreeScenery.folder.get())),
        library_(app.SceneryLib),
        moves_(app.frmMain.optMove.value) {}

  void run() {
    // Picked long ago, it may be gone, or its disk away: that is no empty scenery.
    const auto there = app_.files().attributes(source_);
    if (!succeeds(there.outcome()) ||
        !succeeds(moves_ ? mayBeEmptied(app_, source_, libraryFolders())
                         : mayBeCopied(app_, source_)) ||
        !hasRoom())
      return;
    if (app_.frmMain.optScenery.value)
      addScenery();
    else
      addTextures();
  }

 private:
  bool hasRoom() {
    const double size = sizeOf(app_, source_);
    if (app_.stopRequested) return false;
    const auto room = GetDiskFree(app_.files(), library_);
    if (!succeeds(room.outcome())) return false;
    if (room.value() < withMargin(size)) tellNoRoom(app_, library_);
    return room.value() >= withMargin(size);
  }

  void addScenery() {
    const auto name = askName();
    if (!name) return;
    FileSystem& files = app_.files();
    makeRoots(app_, library_);
    const std::string root = sceneryRootOf(library_);
    // An empty name is the folder of all sceneries.
    const auto found = files.attributes(root + *name);
    if (found.ok() || presenceBy(found.outcome()) == Presence::unknown) {
      ReportError(
          app_, found.ok() ? Outcome::failure(err::pathFileAccess, root + *name) : found.outcome());
      return;
    }
    StagedFolder scenery(app_, root, *name);
    if (ReportError(app_, scenery.make())) return;
    app_.frmMain.lblStatus.caption = "Copying files...";
    WalkReport copied;
    const bool arrived = arrive(app_, scenery, source_, library_, copied);
    // Its place for main-folder textures comes with it.
    if (arrived) MakePath(files, mainRootOf(library_) + *name + "\\Texture");
    const bool listed = arrived && addRowOf(*name, copied.done);
    tellWalk(app_, copied, "copied");
    if (listed) emptySource(copied);
  }

  // The name that the user wants; none when there is to be no scenery.
  std::optional<std::string> askName() {
    const std::string root = sceneryRootOf(library_);
    std::string offered = nearestAddonName(app_, root, FolderName(source_));
    for (;;) {
      auto name = app_.windows.inputBox("Scenery/Foldername", ui::programTitle, offered);
      if (!name) return name;
      const std::string fault = faultOfAddonName(app_, root, *name);
      if (fault.empty()) return name;
      app_.windows.messageBox(
          {"\"" + *name + "\" cannot be the folder's name.\r\n" + fault, ui::BoxIcon::exclamation});
      offered = nearestAddonName(app_, root, *name);
    }
  }

  // False when the library could not be saved.
  bool addRowOf(const std::string& name, int files) {
    auto& list = app_.frmMain.lstInactScenery;
    insertRow(list, {.Name = name, .Folder = addonScenery + name});
    list.setSmallIcon(1, SceneryPlaces(app_).icon(addonScenery + name));
    list.select(1);
    list.ensureVisible(1);
    lstInactScenery_ItemClick(app_);
    if (!SaveSceneryLibList(app_)) return false;
    app_.frmMain.lblStatus.notice = name + " added to the library: " + counted(files);
    return true;
  }

  void addTextures() {
    const auto& list = app_.frmMain.lstInactScenery;
    if (list.selected() == 0) return;
    const std::string leaf = leafOf(list.subItem(list.selected(), sceneryColumn::Folder));
    if (leaf.empty() || !succeeds(leafMayBeUsed(app_, leaf))) return;
    if (app_.windows.messageBox({.text = "This adds these MAIN folder textures\rto the scenery \"" +
                                         leaf + "\" MAIN folder.\r\rDo you wnat to proceed?",
                                 .icon = ui::BoxIcon::question,
                                 .buttons = ui::BoxButtons::yesNo,
                                 .defaultButton = ui::DefaultButton::no}) != ui::Answer::yes)
      return;
    const std::string main = mainRootOf(library_) + leaf + "\\";
    makeRoots(app_, library_);
    if (!succeeds(mayBeFilled(app_, {main, mainRootOf(library_)}))) return;
    MakePath(app_.files(), main + "Texture");
    app_.frmMain.lblStatus.caption = "Copying files...";
    WalkReport copied = WalkTree(app_, source_, main + "Texture\\", WalkCopy, true);
    if (copied.complete()) copied.note(app_.files().flushDisk(library_), library_);
    if (tellWalk(app_, copied, "copied"))
      app_.frmMain.lblStatus.notice = counted(copied.done) + " added to the textures of " + leaf;
    emptySource(copied);
  }

  void emptySource(const WalkReport& copied) {
    if (!moves_) return;
    if (copied.complete() && copied.sourceMayGo())
      tellWalk(app_, WalkTree(app_, source_, "", WalkDelete, true), "deleted");
    else if (copied.complete())
      app_.windows.messageBox({"\"" + source_ +
                                   "\" was not emptied: names that differ in case alone, or links, "
                                   "have not been copied.",
                               ui::BoxIcon::exclamation});
  }

  std::vector<std::string> libraryFolders() const {
    const auto& list = app_.frmMain.lstInactScenery;
    std::vector<std::string> folders;
    for (int row = 1; row <= list.count(); ++row) {
      const std::string leaf = leafOf(list.subItem(row, sceneryColumn::Folder));
      folders.push_back(sceneryRootOf(library_) + leaf + "\\");
      folders.push_back(mainRootOf(library_) + leaf + "\\");
    }
    return folders;
  }

  bool succeeds(const Outcome& step) {
    if (!step.ok()) tellFailure(app_, "Nothing was added to the library.", step);
    return step.ok();
  }

  App& app_;
  const std::string source_, library_;
  const bool moves_;
};

bool isAddon(const std::string& text) {
  return upper(text).find(upper(withoutBackslash(addonScenery))) != std::string::npos;
}

bool isAddonFolder(const std::string& folder) {
  return upper(folder).starts_with(upper(withoutBackslash(addonScenery)));
}

// The import of all add-on sceneries. Rows are held by their ids: it yields all the time.
class Import {
 public:
  explicit Import(App& app) : app_(app), library_(app.SceneryLib), places_(app) {}

  void run() {
    auto& areas = app_.frmMain.lstScenery;
    std::vector<ui::ListView::RowId> ids;
    for (int row = 1; row <= areas.count(); ++row) ids.push_back(areas.id(row));
    makeRoots(app_, library_);
    for (const auto id : ids) {
      const int row = areas.rowOf(id);
      if (row == 0) continue;
      areas.ensureVisible(row);
      if (!import(rowAt(areas, row)) || app_.stopRequested) break;
    }
    areas.ensureVisible(areas.selected());
    SaveSceneryLibList(app_);
    tell();
  }

 private:
  // False ends the import.
  bool import(const SceneryRow& area) {
    if (!isAddonFolder(area.Folder) && !isAddon(area.RemPath)) return true;
    const std::string folder = upper(area.Folder);
    if (folder.empty() || folder == upper(withoutBackslash(addonScenery))) return true;
    auto& library = app_.frmMain.lstInactScenery;
    const int row = addRow(library, area);
    library.setSmallIcon(row, places_.icon(area.Folder));
    ++listed_;
    if (!isAddonFolder(area.Folder)) return true;
    return copyFiles(area, library.id(row));
  }

  bool copyFiles(const SceneryRow& area, ui::ListView::RowId row) {
    FileSystem& files = app_.files();
    const std::string leaf = leafOf(area.Folder);
    const std::string source = sceneryFolder(app_, area.Folder);
    const std::string target = sceneryRootOf(library_) + leaf;
    Outcome may = leafMayBeUsed(app_, leaf);
    if (may.ok()) may = mayBeCopied(app_, source);
    if (may.ok()) may = mayBeFilled(app_, {target, sceneryRootOf(library_)});
    if (!may.ok()) {
      without_ += area.Name + ": " + may.description() + "\r\n";
      return true;
    }
    MakePath(files, mainRootOf(library_) + leaf + "\\Texture");
    MakePath(files, mainRootOf(library_) + leaf + "\\Effects");
    const Presence there = presenceOf(files, target + "\\Scenery\\");
    if (there == Presence::there) return true;
    app_.frmMain.lblStatus.caption = "Copying files: " + leaf;
    const double size = sizeOf(app_, source);
    const auto room = GetDiskFree(files, library_);
    if (room.ok() && room.value() <= withMargin(size)) {
      tellNoRoom(app_, library_);
      return false;
    }
    StagedFolder scenery(app_, sceneryRootOf(library_), leaf);
    WalkReport copied;
    if (!room.ok())
      copied.note(room.outcome(), library_);
    else if (there == Presence::unknown)
      copied.note(files.attributes(target + "\\Scenery\\").outcome(), target);
    else if (copied.note(scenery.make(), scenery.path()))
      arrive(app_, scenery, source, library_, copied);
    report_ += copied;
    if (copied.complete()) return true;
    auto& library = app_.frmMain.lstInactScenery;
    if (const int added = library.rowOf(row); added != 0) library.remove(added);
    --listed_;
    return true;
  }

  void tell() {
    if (tellWalk(app_, report_, "copied") && listed_ > 0)
      app_.frmMain.lblStatus.notice = std::to_string(listed_) +
                                      (listed_ == 1 ? " scenery" : " sceneries") +
                                      " imported: " + counted(report_.done);
    if (!without_.empty())
      app_.windows.messageBox({.text = "Listed without their files:",
                               .icon = ui::BoxIcon::exclamation,
                               .details = without_});
  }

  App& app_;
  const std::string library_;
  SceneryPlaces places_;  // outside the library, which alone is changed
  WalkReport report_;
  int listed_ = 0;
  std::string without_;  // a line for each scenery
};

// What of a library scenery is on disk, as the user agrees to lose it.
void deleteFiles(App& app, ui::ListView::RowId id, WalkReport& report) {
  const auto& list = app.frmMain.lstInactScenery;
  const std::string leaf = leafOf(list.subItem(list.rowOf(id), sceneryColumn::Folder));
  AddonFiles files;
  Outcome may = leafMayBeUsed(app, leaf);
  for (const std::string& root : {sceneryRootOf(app.SceneryLib), mainRootOf(app.SceneryLib)}) {
    files.folders.push_back(libraryFolder(app, root, list.rowOf(id)));
    if (may.ok()) may = mayBeGivenUp(app, files.folders.back());
  }
  if (!may.ok()) {
    tellFailure(app, "The files of the scenery \"" + leaf + "\" stay.", may);
    return;
  }
  const std::string package = app.SceneryPacksPath + leaf + packageEnd;
  const ui::Answer packageToo = packageGoesToo(app, package);
  if (packageToo == ui::Answer::cancel) {
    report.stopped = true;
    return;
  }
  if (packageToo == ui::Answer::yes) files.package = package;
  report += deleteAddon(app, files);
}

}  // namespace

void btnAddToSL_Click(App& app) {
  if (app.SceneryLib.empty() || app.frmMain.ftreeScenery.folder->empty()) return;
  const LongOperation busy(app);
  Addition(app).run();
  app.frmMain.lblStatus.caption = "";
}

void btnSLDel_Click(App& app) {
  auto& list = app.frmMain.lstInactScenery;
  if (list.selected() == 0) return;
  const auto id = list.id(list.selected());
  const auto asks = [&app](const char* text, ui::BoxIcon icon, ui::DefaultButton button) {
    return app.windows.messageBox({.text = text,
                                   .icon = icon,
                                   .buttons = ui::BoxButtons::yesNo,
                                   .title = "Delete Scenery",
                                   .defaultButton = button}) == ui::Answer::yes;
  };
  if (!asks("Remove selected Scenery from Library??", ui::BoxIcon::exclamation,
            ui::DefaultButton::byIcon))
    return;
  const bool withFiles = asks("Delete related Scenery files from harddrive as well?",
                              ui::BoxIcon::question, ui::DefaultButton::no);
  const LongOperation busy(app);
  WalkReport report;
  int row = list.rowOf(id);
  if (row == 0) return;
  if (withFiles && !list.subItem(row, sceneryColumn::Folder).empty()) deleteFiles(app, id, report);
  app.frmMain.lblStatus.caption = "";
  tellWalk(app, report, "deleted");
  row = list.rowOf(id);
  if (row == 0 || !report.complete()) return;
  list.remove(row);
  SaveSceneryLibList(app);
  list.select(std::min(row, list.count()));
  lstInactScenery_ItemClick(app);
}

void mnuFileImportSceneries_Click(App& app) {
  if (app.SceneryLib.empty()) return;
  const LongOperation busy(app);
  Import(app).run();
  app.frmMain.lblStatus.caption = "";
}

bool hasAddonSceneries(const App& app) {
  const auto& list = app.frmMain.lstScenery;
  for (int row = 1; row <= list.count(); ++row)
    if (isAddonFolder(list.subItem(row, sceneryColumn::Folder)) ||
        isAddon(list.subItem(row, sceneryColumn::RemPath)))
      return true;
  return false;
}

}  // namespace skv
