#include "packaging/scenery_installer.h"

#include <array>
#include <optional>
#include <set>

#include "base/paths.h"
#include "base/text.h"
#include "core/disk_queries.h"
#include "core/long_operation.h"
#include "core/messages.h"
#include "core/stores.h"
#include "packaging/addon_archive.h"
#include "packaging/addon_placement.h"
#include "scenery/scenery_list_files.h"
#include "scenery/scenery_lists.h"
#include "scenery/scenery_order.h"
#include "scenery/scenery_places.h"
#include "scenery/scenery_row.h"
#include "scenery/scenery_view.h"

namespace skv {

namespace {

// One run of the installer, from the archive to the selected row.
class SceneryInstallation {
 public:
  explicit SceneryInstallation(App& app)
      : app_(app),
        store_{AddonType::scenery, app.SceneryLib, sceneryRootOf(app.SceneryLib),
               app.SceneryPacksPath, "Scenery"},
        archive_(app, store_) {}

  bool run() {
    const LongOperation busy(app_);
    if (!archive_.choose()) return false;
    if (!archive_.askName()) {
      archive_.giveUp();
      if (archive_.addonStands()) listIfMissing();
      return false;
    }
    placement_.emplace(app_, store_, archive_.name());
    const bool installed = archive_.unpack() && makeFolders() && archive_.unpackEmbedded() &&
                           place() && placement_->settle();
    if (installed)
      finish();
    else
      undo();
    return installed;
  }

  bool listStanding(const std::string& name) {
    archive_.setName(name);
    if (listIsKnown()) return listIfMissing();
    ReportError(app_, Outcome::withText(err::pathFileAccess,
                                        "The list of the scenery library could not be read, and "
                                        "so nobody knows whether \"" +
                                            name + "\" is in it."));
    return false;
  }

 private:
  // A scenery always begins with a subfolder "Scenery".
  bool makeFolders() {
    return placement_->makeFolders(std::array{"Texture", "Effects"}) &&
           !ReportError(app_, app_.files().makeFolder(placement_->addon() + "\\Scenery"));
  }

  bool place() {
    AddonPlacement& parts = *placement_;
    parts.placeShared("Looking for Main Effects...", WalkFindEffect, "\\Effects");
    const bool found = placeSceneries();
    if (!found && parts.goesOn())
      app_.windows.messageBox({"No scenery files found!"});
    else
      parts.placeShared("Looking for Main Texures...", WalkFindTextureBmp, "\\Texture");
    if (!app_.stopRequested) tellWalk(app_, parts.report(), "moved");
    return found && parts.goesOn();
  }

  // Moves each folder with ".BGL" files that a search hits, until it hits none. Answers whether
  // there was one.
  bool placeSceneries() {
    AddonPlacement& parts = *placement_;
    std::set<std::string> taken;
    status("Looking for scenery files...");
    std::string hit = parts.find(WalkFindBgl);
    while (!hit.empty()) {
      // What could not leave a folder would be found for ever.
      if (!taken.insert(hit).second) {
        parts.report().note(Outcome::failure(err::pathFileAccess, hit), hit);
        break;
      }
      status("Moving scenery files...");
      if (upper(hit).ends_with("\\SCENERY\\"))
        parts.moveBehind(folderAbove(withoutBackslash(hit)), parts.addon());
      else
        parts.moveBehind(hit, parts.addon() + "\\Scenery");
      hit = parts.find(WalkFindBgl);
    }
    return !taken.empty();
  }

  void finish() {
    LeftOver& leftOver = placement_->leftOver();
    archive_.finish(leftOver);
    const int files = placement_->report().done;
    if (addRow())
      app_.frmMain.lblStatus.notice = archive_.name() + " installed: " + std::to_string(files) +
                                      (files == 1 ? " file" : " files");
    archive_.tellRest(leftOver);
  }

  std::string folder() const { return addonScenery + archive_.name(); }

  // Adds the row, or takes the one that the scenery has, whose folder may have been gone. False
  // when the list could not be saved, which the user is told.
  bool addRow() {
    auto& list = app_.frmMain.lstInactScenery;
    // Another library, or none yet, is on screen.
    if (!equalsIgnoringCase(app_.librarySource.file, store_.folder + sceneryLibraryFile))
      LoadSceneryLibList(app_);
    int row = rowOfLeaf(list, archive_.name());
    if (row == 0) {
      insertRow(list, {.Name = archive_.name(), .Folder = folder()});
      row = 1;
    }
    const auto id = list.id(row);
    const bool saved = SaveSceneryLibList(app_);
    // A box may have been shown, in whose time the list can change.
    row = list.rowOf(id);
    if (row == 0) return saved;
    list.select(row);
    lstInactScenery_ItemClick(app_);
    list.ensureVisible(row);
    list.setSmallIcon(row, SceneryPlaces(app_).icon(folder()));
    return saved;
  }

  // A run that ended between the scenery's name and its row left one that no other run could
  // install again. It is whole: only the row is missing. False when it could not be listed, which
  // the user is told.
  bool listIfMissing() {
    if (archive_.name().empty() || !listIsKnown() ||
        rowOfLeaf(app_.frmMain.lstInactScenery, archive_.name()) != 0)
      return true;
    if (!addRow()) return false;
    app_.frmMain.lblStatus.notice =
        archive_.name() + " was in the library already. Now the list has it, too.";
    return true;
  }

  bool listIsKnown() const { return app_.librarySource.bytes && app_.frmMain.frameScenery.visible; }

  // Nothing of the run remains.
  void undo() {
    placement_->undo(archive_.stillThere());
    archive_.giveUp();
    if (app_.stopRequested)
      app_.frmMain.lblStatus.notice = "Installation stopped: nothing was added to the library";
  }

  void status(const std::string& text) { app_.frmMain.lblStatus.caption = text; }

  App& app_;
  const AddonStore store_;
  AddonArchive archive_;
  std::optional<AddonPlacement> placement_;  // once the name is known
};

}  // namespace

bool listInstalledSC(App& app, const std::string& name) {
  return SceneryInstallation(app).listStanding(name);
}

bool mnuFileInstallSC_Click(App& app) {
  if (app.SceneryLib.empty()) {
    app.windows.messageBox(
        {"No folder is set for the scenery library. File, Settings (F2) is the "
         "place.",
         ui::BoxIcon::exclamation});
    return false;
  }
  const bool installed = SceneryInstallation(app).run();
  showSceneryCommands(app);
  return installed;
}

}  // namespace skv
