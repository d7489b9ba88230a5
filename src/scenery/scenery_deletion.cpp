#include "scenery/scenery_deletion.h"

#include <algorithm>
#include <utility>

#include "base/paths.h"
#include "core/delete_folder.h"
#include "core/disk_queries.h"
#include "core/long_operation.h"
#include "core/messages.h"
#include "core/stores.h"
#include "scenery/scenery_database.h"
#include "scenery/scenery_guard.h"
#include "scenery/scenery_lists.h"
#include "scenery/scenery_order.h"
#include "scenery/scenery_places.h"
#include "scenery/scenery_row.h"

namespace skv {

namespace {

// No is what Enter presses. Where there is Cancel, Esc means that.
ui::Answer ask(App& app, const std::string& text, ui::BoxIcon icon,
               ui::BoxButtons buttons = ui::BoxButtons::yesNo,
               const char* title = ui::programTitle) {
  return app.windows.messageBox({.text = text,
                                 .icon = icon,
                                 .buttons = buttons,
                                 .title = title,
                                 .defaultButton = ui::DefaultButton::no});
}

std::string quoted(const std::string& text) { return "\"" + text + "\""; }

// What a guard says of folders that may go, ahead of the deed.
enum class Files { go, stay, allOff };

// Where the files have to stay, the user may want to remove `what` alone.
Files judge(App& app, const std::string& name, const Outcome& may, const char* what) {
  if (may.ok()) return Files::go;
  if (!isRefusal(may)) {
    tellFailure(app, "Nothing was deleted.", may);
    return Files::allOff;
  }
  return ask(app,
             "The files of the scenery " + quoted(name) + " stay.\r\n" + may.description() +
                 "\r\n\r\nDo you want to remove its " + what + " alone?",
             ui::BoxIcon::question) == ui::Answer::yes
             ? Files::stay
             : Files::allOff;
}

class AreaDeletion {
 public:
  AreaDeletion(App& app, int row)
      : app_(app),
        id_(app.frmMain.lstScenery.id(row)),
        row_(rowAt(app.frmMain.lstScenery, row)),
        leaf_(leafOf(row_.Folder)) {}

  void run() {
    if (!decide() || !mayGoAsRequired()) return;
    const auto leave = mayReplaceSceneryCfg(app_);
    if (!leave) return;
    const LongOperation busy(app_);
    const int place = app_.frmMain.lstScenery.rowOf(id_);
    if (place == 0 || !SaveSceneryCfg(app_, *leave, id_)) {
      app_.frmMain.lblStatus.caption = "";
      return;
    }
    if (!folder_.empty() && !filesGo()) putBack(place);
    app_.frmMain.lblStatus.caption = "";
    showNoScenery(app_);
    lstScenery_ItemClick(app_);
    showLibraryPlaces(app_);
  }

 private:
  bool agrees(const std::string& text, ui::BoxIcon icon) {
    return ask(app_, text, icon) == ui::Answer::yes;
  }

  // Finds out, with the user, which folder is to go, "" for none. False when nothing is to be done.
  bool decide() {
    if (row_.Folder.empty())
      return agrees("The scenery " + quoted(row_.Name) +
                        " names no folder: only its area goes, and no files.\r\rDo you want to "
                        "proceed?",
                    ui::BoxIcon::question);
    const int row = app_.frmMain.lstScenery.rowOf(id_);
    const FolderUse use = simulatorFolder(app_, row);
    const Outcome may =
        isElementName(leaf_)
            ? mayBeGivenUp(app_, use)
            : Outcome::withText(err::badFileName, quoted(row_.Folder) + " names no scenery.");
    const Files files = judge(app_, row_.Name, may, "area");
    if (files != Files::go) return files == Files::stay;
    folder_ = use.folder;
    return agrees("The scenery " + quoted(row_.Name) +
                      " goes from FS2002.\r\rThis will delete ALL folders and files\rin " +
                      quoted(withoutBackslash(folder_)) + " and below.\r\rDo you want to proceed?",
                  ui::BoxIcon::question) &&
           (isInLibrary() ||
            agrees("The scenery " + quoted(leaf_) +
                       " seem NOT to be in the Library!\r\rDo you still want to delete this "
                       "scenery?",
                   ui::BoxIcon::exclamation));
  }

  // An empty folder is no copy.
  bool isInLibrary() const {
    if (app_.SceneryLib.empty()) return false;
    const auto listing = app_.files().list(sceneryRootOf(app_.SceneryLib) + leaf_ + "\\",
                                           FileSystem::Entries::plain);
    return listing.ok() && !listing.value().empty();
  }

  bool mayGoAsRequired() {
    return !isRequiredArea(app_, row_) ||
           agrees("The simulator's database says of the area " + quoted(row_.Name) +
                      " that it is required (Required=TRUE).\r\rDo you still want to delete it?",
                  ui::BoxIcon::exclamation);
  }

  bool filesGo() {
    app_.frmMain.lblStatus.caption = "Deleting files...";
    return tellWalk(app_, deleteFolder(app_, folder_, app_.FSRoot + addonScenery), "deleted");
  }

  void putBack(int place) {
    auto& list = app_.frmMain.lstScenery;
    place = std::min(place, list.count() + 1);
    insertRow(list, row_, place);
    list.setChecked(place, row_.active);
    list.select(place);
    SaveSceneryCfg(app_, {app_.sceneryDatabase.was});
  }

  App& app_;
  const ui::ListView::RowId id_;
  const SceneryRow row_;
  const std::string leaf_;
  std::string folder_;
};

class LibraryDeletion {
 public:
  LibraryDeletion(App& app, int row)
      : app_(app),
        id_(app.frmMain.lstInactScenery.id(row)),
        row_(rowAt(app.frmMain.lstInactScenery, row)),
        leaf_(leafOf(row_.Folder)) {}

  void run() {
    if (ask("Remove selected Scenery from Library??\r\n" + quoted(row_.Name),
            ui::BoxIcon::exclamation, ui::BoxButtons::yesNo) != ui::Answer::yes ||
        !decide())
      return;
    const LongOperation busy(app_);
    const bool gone = tellWalk(app_, deleteAddon(app_, files_), "deleted");
    app_.frmMain.lblStatus.caption = "";
    if (gone) removeRow();
    showLibraryPlaces(app_);
  }

 private:
  ui::Answer ask(const std::string& text, ui::BoxIcon icon, ui::BoxButtons buttons) {
    return skv::ask(app_, text, icon, buttons, "Delete Scenery");
  }

  // Finds out, with the user, which files are to go. False when nothing is to be done.
  bool decide() {
    const int row = app_.frmMain.lstInactScenery.rowOf(id_);
    if (row == 0) return false;  // it has gone during the question
    AddonFiles files;
    std::string named;
    Outcome may = leafMayBeUsed(app_, leaf_);
    for (const std::string& root : {sceneryRootOf(app_.SceneryLib), mainRootOf(app_.SceneryLib)}) {
      files.folders.push_back(libraryFolder(app_, root, row));
      if (may.ok()) may = mayBeGivenUp(app_, files.folders.back());
      named += "\r\n" + files.folders.back().folder;
    }
    if (row_.Folder.empty()) return true;
    const Files judged = judge(app_, row_.Name, may, "row");
    if (judged != Files::go) return judged == Files::stay;
    const ui::Answer go = ask("Delete related Scenery files from harddrive as well?" + named,
                              ui::BoxIcon::question, ui::BoxButtons::yesNoCancel);
    if (go != ui::Answer::yes) return go == ui::Answer::no;
    const std::string package = app_.SceneryPacksPath + leaf_ + packageEnd;
    const ui::Answer packageToo = packageGoesToo(app_, package);
    if (packageToo == ui::Answer::yes) files.package = package;
    files_ = std::move(files);
    return packageToo != ui::Answer::cancel;
  }

  // Where the list cannot be saved the row stays as well, so that it can be removed again.
  void removeRow() {
    auto& list = app_.frmMain.lstInactScenery;
    const int row = list.rowOf(id_);
    if (row == 0) return;
    list.remove(row);
    if (!SaveSceneryLibList(app_)) {
      insertRow(list, row_, row);
      list.select(row);
      return;
    }
    list.select(std::min(row, list.count()));
    showNoScenery(app_);
    lstInactScenery_ItemClick(app_);
  }

  App& app_;
  const ui::ListView::RowId id_;
  const SceneryRow row_;
  const std::string leaf_;
  AddonFiles files_;
};

}  // namespace

void btnFSScenDel_Click(App& app) {
  const auto& list = app.frmMain.lstScenery;
  const int row = list.selected();
  if (row != 0 && list.colour(row) != builtInColour) AreaDeletion(app, row).run();
}

void btnSLDel_Click(App& app) {
  const int row = app.frmMain.lstInactScenery.selected();
  if (row != 0) LibraryDeletion(app, row).run();
}

}  // namespace skv
