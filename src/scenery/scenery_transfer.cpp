#include "scenery/scenery_transfer.h"

#include <algorithm>

#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/landing_folder.h"
#include "core/long_operation.h"
#include "core/messages.h"
#include "core/shared_folders.h"
#include "core/stores.h"
#include "core/working_folder.h"
#include "core/zip_service.h"
#include "scenery/scenery_database.h"
#include "scenery/scenery_guard.h"
#include "scenery/scenery_lists.h"
#include "scenery/scenery_places.h"
#include "scenery/scenery_row.h"

namespace skv {

namespace {

constexpr int yieldsAfterExtraction = 2000;

// One click of "Add to FS2002". What it needs to know it takes at its begin.
class Transfer {
 public:
  Transfer(App& app, SceneryRow row)
      : app_(app),
        files_(app.files()),
        row_(std::move(row)),
        leaf_(leafOf(row_.Folder)),
        FSRoot_(app.FSRoot),
        library_(app.SceneryLib),
        package_(app.SceneryPacksPath + leaf_ + packageEnd) {}

  void run() {
    if (!succeeds(leafMayBeUsed(app_, leaf_)) || !findPackage()) return;
    target_ = packed_ ? FSRoot_ + addonScenery + leaf_ : sceneryFolder(app_, row_.Folder);
    if (!succeeds(mayBeFilled(app_, {target_ + "\\", FSRoot_})) || !chooseArea()) return;
    const auto leave = mayReplaceSceneryCfg(app_);
    if (!leave) return;
    const LongOperation busy(app_);
    if (area_ == 0) addArea();
    if (!(packed_ ? fromPackage() : fromLibrary())) {
      dropArea();
      app_.frmMain.lblStatus.caption = "";
      return;
    }
    if (SaveSceneryCfg(app_, *leave))
      app_.frmMain.lblStatus.notice = row_.Name +
                                      " added to FS2002: " + std::to_string(report_.done) +
                                      (report_.done == 1 ? " file" : " files");
    reloadLibrary();
    app_.frmMain.lblStatus.caption = "";
  }

 private:
  // A scenery with a Package comes from it: compressing has thinned its folders out.
  bool findPackage() {
    const auto found = files_.attributes(package_);
    packed_ = found.ok() && !found.value().folder;
    return found.ok() || presenceBy(found.outcome()) == Presence::absent ||
           succeeds(found.outcome());
  }

  // Which area the files are for: that of an earlier try that still waits to be saved, or the
  // one that the user wants to keep; else it is a new one. False when nothing is to be done.
  bool chooseArea() {
    const auto& list = app_.frmMain.lstScenery;
    for (int row = 1; row <= list.count() && area_ == 0; ++row) {
      const std::string& Folder = list.subItem(row, sceneryColumn::Folder);
      if (equalsIgnoringCase(Folder, row_.Folder) ||
          equalsIgnoringCase(withoutBackslash(sceneryFolder(app_, Folder)), target_))
        area_ = list.id(row);
    }
    if (area_ == 0 || std::ranges::none_of(app_.sceneryDatabase.rows, [this](const auto& saved) {
          return saved.first == area_;
        }))
      return true;
    const ui::Answer answer = app_.windows.messageBox(
        {.text = "\"" + row_.Name + "\" stands in FS2002 already:\r\n\"" + target_ +
                 "\"\r\n\r\nDo you want a second area for it? No only brings its files up to date.",
         .icon = ui::BoxIcon::question,
         .buttons = ui::BoxButtons::yesNoCancel,
         .defaultButton = ui::DefaultButton::cancel});
    if (answer == ui::Answer::yes) area_ = 0;
    return answer != ui::Answer::cancel;
  }

  void addArea() {
    isNew_ = true;
    auto& list = app_.frmMain.lstScenery;
    insertRow(list, row_);
    area_ = list.id(1);
    const std::string number = std::to_string(list.count());
    list.setSubItem(1, sceneryColumn::Area, sortLayer(number));
    list.setSubItem(1, sceneryColumn::Layer, number);
    list.setSubItem(1, sceneryColumn::SortLayer, sortLayer(number));
    list.setChecked(1, true);
    sortByLayer(list);
    list.ensureVisible(list.rowOf(area_));
  }

  void dropArea() {
    auto& list = app_.frmMain.lstScenery;
    if (const int row = list.rowOf(area_); row != 0 && isNew_ && !keepsArea_) list.remove(row);
  }

  bool fromLibrary() {
    app_.frmMain.lblStatus.caption = "Copying files...";
    const std::string source = sceneryRootOf(library_) + leaf_ + "\\";
    const auto there = files_.attributes(source);
    if (!there.ok() && presenceBy(there.outcome()) == Presence::unknown)
      return succeeds(there.outcome());
    return copy(source, mainRootOf(library_) + leaf_ + "\\", true);
  }

  bool fromPackage() {
    if (!succeeds(clearWorkingFolders(app_))) return false;
    const bool done =
        unpack() && copy(app_.InstallTempDir + "Scenery\\", app_.InstallTempDir + "Main\\", false);
    emptyWorkingFolder(app_);
    app_.frmMain.lblStatus.caption = "";
    return done;
  }

  bool unpack() {
    app_.frmMain.lblStatus.caption = "Prepairing files...";
    ReadAndExtract job(app_);
    if (!job.open(package_)) return false;
    app_.frmMain.lblStatus.caption = "Unzipping: " + fileName(package_);
    if (!job.fits(FSRoot_)) {
      // The area stays unsaved, and its folder with it, for the try with more room.
      keepsArea_ = !app_.stopRequested;
      if (keepsArea_) MakePath(files_, target_);
      return false;
    }
    if (!job.extract(app_.InstallTempDir, yieldsAfterExtraction)) return false;
    const auto there = files_.attributes(app_.InstallTempDir + "Scenery\\");
    return (there.ok() && there.value().folder) ||
           succeeds(Outcome::withText(
               err::zip, "The Package \"" + package_ + "\" holds no folder \"Scenery\"."));
  }

  // Merges a scenery and its files for the shared folders into the simulator.
  bool copy(const std::string& scenery, const std::string& main, bool overwrite) {
    const std::string root = folderAbove(target_);
    MakePath(files_, root);
    LandingFolder landing(app_, root, leaf_);
    if (!succeeds(landing.open())) return false;
    report_ = WalkTree(app_, scenery, landing.path(), WalkCopy, overwrite);
    for (const char* shared : {"Texture", "Effects"})
      if (report_.complete())
        report_ += fillSharedFolder(app_, main + shared, FSRoot_ + shared, overwrite);
    if (report_.complete()) report_.note(files_.flushDisk(FSRoot_), FSRoot_);
    return tellWalk(app_, report_, "copied") && succeeds(landing.settle());
  }

  // Brings the icons up to date. The row stays selected.
  void reloadLibrary() {
    auto& list = app_.frmMain.lstInactScenery;
    const int row = list.selected();
    LoadSceneryLibList(app_);
    if (row > list.count()) return;
    list.select(row);
    list.ensureVisible(row);
  }

  bool succeeds(const Outcome& step) {
    if (!step.ok()) tellFailure(app_, row_.Name + " was not added to FS2002.", step);
    return step.ok();
  }

  App& app_;
  FileSystem& files_;
  const SceneryRow row_;
  const std::string leaf_, FSRoot_, library_, package_;
  bool packed_ = false;
  std::string target_;            // of the scenery's files, without trailing backslash
  ui::ListView::RowId area_ = 0;  // of lstScenery
  bool isNew_ = false, keepsArea_ = false;
  WalkReport report_;
};

}  // namespace

void btnAddSLtoFS_Click(App& app) {
  const auto& list = app.frmMain.lstInactScenery;
  const int row = list.selected();
  if (row == 0 || leafOf(list.subItem(row, sceneryColumn::Folder)).empty()) return;
  Transfer(app, rowAt(list, row)).run();
}

}  // namespace skv
