#include "scenery/scenery_library.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "base/paths.h"
#include "core/addon_name.h"
#include "core/collect_files.h"
#include "core/disk_queries.h"
#include "core/long_operation.h"
#include "core/messages.h"
#include "core/stores.h"
#include "core/walktree.h"
#include "scenery/scenery_arrival.h"
#include "scenery/scenery_guard.h"
#include "scenery/scenery_lists.h"
#include "scenery/scenery_order.h"
#include "scenery/scenery_places.h"
#include "scenery/scenery_row.h"

namespace skv {

namespace {

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
    makeLibraryRoots(app_, library_);
    const std::string root = sceneryRootOf(library_);
    const auto found = files.attributes(root + *name);
    if (!found.ok() && presenceBy(found.outcome()) == Presence::unknown) {
      ReportError(app_, found.outcome());
      return;
    }
    if (found.ok()) {
      // An empty name is the folder of all sceneries.
      const bool taken = name->empty() || !found.value().folder ||
                         rowOfLeaf(app_.frmMain.lstInactScenery, *name) != 0;
      if (taken) {
        ReportError(app_, Outcome::failure(err::pathFileAccess, root + *name));
        return;
      }
      if (isSource(root + *name)) {
        takeIn(*name);
        return;
      }
      if (!mayComplete(root + *name + "\\")) return;
    }
    StagedFolder scenery(app_, root, *name);
    if (ReportError(app_, scenery.make())) return;
    app_.frmMain.lblStatus.caption = "Copying files...";
    WalkReport copied;
    const bool arrived = arrive(app_, scenery, source_, library_, copied);
    // Its place for main-folder textures comes with it.
    if (arrived) MakePath(files, mainRootOf(library_) + *name + "\\Texture");
    const bool listed = arrived && addRowOf(*name);
    if (listed)
      app_.frmMain.lblStatus.notice = *name + " added to the library: " + countedFiles(copied.done);
    tellWalk(app_, copied, "copied");
    if (listed) emptySource(copied);
  }

  // The folder stands in the library, where only its row is missing.
  void takeIn(const std::string& name) {
    MakePath(app_.files(), mainRootOf(library_) + name + "\\Texture");
    if (addRowOf(name)) app_.frmMain.lblStatus.notice = name + " is listed in the library now";
  }

  bool isSource(const std::string& folder) const {
    const std::string identity = app_.files().identity(folder);
    return equalsIgnoringCase(withBackslash(folder), source_) ||
           (!identity.empty() && identity == app_.files().identity(source_));
  }

  // Whether a folder that the library does not list may get the files of the source. A run that was
  // cut off before the row has left the same files there, or fewer; the user is asked about others.
  bool mayComplete(const std::string& folder) {
    return isPartOfSource(folder) ||
           app_.windows.messageBox(
               {.text = "The library has a folder \"" + folder +
                        "\" that it does not list, with files that are not those of \"" + source_ +
                        "\".\r\n\r\nDo you want to copy these into it, over files of the same "
                        "names? To list it as it is, select that folder in the browser.",
                .icon = ui::BoxIcon::question,
                .buttons = ui::BoxButtons::yesNo,
                .defaultButton = ui::DefaultButton::no}) == ui::Answer::yes;
  }

  bool isPartOfSource(const std::string& folder) {
    constexpr int coarsestTime = 2;  // seconds, of a FAT disk
    std::vector<std::string> paths;
    const WalkReport walked = collectFiles(app_, folder, paths);
    return walked.complete() && std::ranges::all_of(paths, [&](const std::string& path) {
             const auto here = app_.files().fileState(folder + path);
             const auto there = app_.files().fileState(source_ + path);
             return here.ok() && there.ok() && here.value().length == there.value().length &&
                    std::abs(here.value().modified.seconds - there.value().modified.seconds) <=
                        coarsestTime;
           });
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

  // Takes the row that the scenery has, whose folder was gone, or adds one. False when the library
  // could not be saved: a new row goes again, so that a second try finds what is on disk.
  bool addRowOf(const std::string& name) {
    auto& list = app_.frmMain.lstInactScenery;
    int row = rowOfLeaf(list, name);
    if (row == 0) {
      row = 1;
      insertRow(list, {.Name = name, .Folder = addonScenery + name});
      const auto id = list.id(row);
      const bool saved = SaveSceneryLibList(app_);
      row = list.rowOf(id);
      if (!saved && row != 0) list.remove(row);
      if (!saved || row == 0) return saved;
    }
    list.setSmallIcon(row, SceneryPlaces(app_).icon(list.subItem(row, sceneryColumn::Folder)));
    list.select(row);
    list.ensureVisible(row);
    lstInactScenery_ItemClick(app_);
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
    makeLibraryRoots(app_, library_);
    if (!succeeds(mayBeFilled(app_, {main, mainRootOf(library_)}))) return;
    MakePath(app_.files(), main + "Texture");
    app_.frmMain.lblStatus.caption = "Copying files...";
    WalkReport copied = WalkTree(app_, source_, main + "Texture\\", WalkCopy, true);
    if (copied.complete()) copied.note(app_.files().flushDisk(library_), library_);
    if (tellWalk(app_, copied, "copied"))
      app_.frmMain.lblStatus.notice =
          countedFiles(copied.done) + " added to the textures of " + leaf;
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

}  // namespace

void btnAddToSL_Click(App& app) {
  if (app.SceneryLib.empty() || app.frmMain.ftreeScenery.folder->empty()) return;
  const LongOperation busy(app);
  Addition(app).run();
  app.frmMain.lblStatus.caption = "";
}

}  // namespace skv
