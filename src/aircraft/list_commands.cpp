#include "aircraft/list_commands.h"

#include <algorithm>

#include "aircraft/aircraft_cfg.h"
#include "aircraft/alias_users.h"
#include "aircraft/empty_lists.h"
#include "aircraft/list_files.h"
#include "aircraft/place_mask.h"
#include "base/paths.h"
#include "core/delete_folder.h"
#include "core/disk_queries.h"
#include "core/folder_guard.h"
#include "core/list_store.h"
#include "core/long_operation.h"
#include "core/messages.h"
#include "core/stores.h"
#include "core/view.h"
#include "core/walktree.h"
#include "ui/dialogs/dir_select.h"

namespace skv {

namespace {

// A folder below the aircraft root sorts after it.
bool isAircraftFolder(App& app, const std::string& folder) {
  return upper(folder) > upper(app.ACRoot) && PathExists(app.files(), folder + "aircraft.cfg");
}

void setMissingIcons(App& app) {
  auto& list = app.frmMain.lstAircraft;
  const PlaceIndex places(app);
  for (int row = 1; row <= list.count(); ++row)
    if (list.smallIcon(row) == 0)
      list.setSmallIcon(row, placeIcon(places.mask(FolderName(list.subItem(row, 1)))));
}

void import(App& app, ui::ListView& list, WalkCode scan, bool (*save)(App&), const char* what) {
  if (app.ACRoot.empty()) return;
  const LongOperation busy(app);
  const int before = list.count();
  const WalkReport report = WalkTree(app, app.ACRoot, "", scan, true);
  save(app);
  app.frmMain.lblStatus.caption = "";
  const int added = list.count() - before;
  if (tellWalk(app, report, "read"))
    app.frmMain.lblStatus.notice =
        "New " + std::string(what) + " in the list: " + std::to_string(added);
  fillEmptyTexts(app);
}

// One delete, from the first question to the row.
class Deletion {
 public:
  Deletion(App& app, int row)
      : app_(app),
        inSimulator_(inFSView(app)),
        row_(app.frmMain.lstAircraft.id(row)),
        Name_(app.frmMain.lstAircraft.text(row)),
        Folder_(app.frmMain.lstAircraft.subItem(row, 1)),
        FolderName_(FolderName(withBackslash(Folder_))) {}

  void run() {
    if (ask((inSimulator_ ? "Remove selected Aircraft?"
                          : "Remove selected Aircraft from Hangar??") +
                ("\r\"" + Name_ + "\", " + Folder_),
            ui::BoxIcon::warning, ui::BoxButtons::yesNo) != ui::Answer::yes)
      return;
    const LongOperation busy(app_);
    const bool gone = inSimulator_ ? simulatorFilesGo() : hangarFilesGo();
    app_.frmMain.lblStatus.caption = "";
    if (gone)
      removeRow();
    else
      showWhatStands();
  }

 private:
  // No is what Enter presses. Where there is Cancel, Esc means that and calls all off.
  ui::Answer ask(const std::string& text, ui::BoxIcon icon, ui::BoxButtons buttons) {
    return app_.windows.messageBox({.text = text,
                                    .icon = icon,
                                    .buttons = buttons,
                                    .title = "Delete Aircraft",
                                    .defaultButton = ui::DefaultButton::no});
  }

  // The three answer whether the row is to go.
  bool simulatorFilesGo() {
    const ui::Answer files =
        ask("Delete selected Aircraft FOLDER from FS2002 as well?\rTHIS WILL DELETE THIS FOLDER "
            "AND\rALL DATA UNDERNEATH IT:\r" +
                Folder_ + usersNote(),
            ui::BoxIcon::question, ui::BoxButtons::yesNoCancel);
    if (files != ui::Answer::yes) return files == ui::Answer::no;
    const std::string folder = withBackslash(Folder_);
    if (equalsIgnoringCase(folder, app_.ACRoot)) return true;
    if (const Outcome may = mayBeDeleted(app_, folder, otherFolders([](const std::string& other) {
                                           return withBackslash(other);
                                         }));
        !may.ok())
      return filesStay(may);
    for (;;) {
      const WalkReport report = deleteFolder(app_, folder, app_.ACRoot);
      if (report.complete()) return true;
      if (report.stopped) return tellWalk(app_, report, "deleted");
      if (app_.windows.messageBox({.text = "Close FS 2002 and click OK!",
                                   .icon = ui::BoxIcon::exclamation,
                                   .buttons = ui::BoxButtons::okCancel,
                                   .details = report.where + "\n" + report.first.description()}) !=
          ui::Answer::ok)
        return false;
    }
  }

  bool hangarFilesGo() {
    AddonFiles files;
    std::string named;
    const std::string aircraft = aircraftRootOf(app_.HangarDir), main = mainRootOf(app_.HangarDir);
    // A row that leads elsewhere means the Hangar's own folder of that name.
    const auto inHangar = [&aircraft](const std::string& row) {
      const std::string folder = withBackslash(row);
      return isOrHolds(aircraft, folder) ? folder : aircraft + FolderName(folder) + "\\";
    };
    files.folders.push_back({inHangar(Folder_), aircraft, otherFolders(inHangar)});
    const bool sharesName = !namesakeInHangar(app_, files.folders[0].folder).empty();
    if (!sharesName)
      files.folders.push_back(
          {main + FolderName_ + "\\", main, otherFolders([&main](const std::string& other) {
             return main + FolderName(withBackslash(other)) + "\\";
           })});
    for (const FolderUse& use : files.folders) named += "\r" + use.folder;
    if (sharesName)
      named +=
          "\rWhat another aircraft with a folder of that name may need, in \"Main\" or as a "
          "Package, stays.";
    const ui::Answer go =
        ask("Delete related Aircraft files from harddrive as well?" + named + usersNote(),
            ui::BoxIcon::question, ui::BoxButtons::yesNoCancel);
    if (go != ui::Answer::yes) return go == ui::Answer::no;
    Outcome may = isElementName(FolderName_)
                      ? Outcome()
                      : Outcome::withText(err::badFileName, "\"" + Folder_ + "\" has no name.");
    for (const FolderUse& use : files.folders)
      if (may.ok()) may = mayBeGivenUp(app_, use);
    if (!may.ok()) return filesStay(may);
    const std::string package = app_.PacksDir + FolderName_ + packageEnd;
    const ui::Answer packageToo = sharesName ? ui::Answer::no : packageGoesToo(app_, package);
    if (packageToo == ui::Answer::cancel) return false;
    if (packageToo == ui::Answer::yes) files.package = package;
    return tellWalk(app_, deleteAddon(app_, files), "deleted");
  }

  bool filesStay(const Outcome& why) {
    tellFailure(app_,
                "The files of this aircraft stay, and so does its row. Answer No to the question "
                "for its files to take the row alone out of the list.",
                why);
    return false;
  }

  template <class Place>
  std::vector<std::string> otherFolders(Place place) const {
    const auto& list = app_.frmMain.lstAircraft;
    std::vector<std::string> folders;
    for (int row = 1; row <= list.count(); ++row)
      if (list.id(row) != row_) folders.push_back(place(list.subItem(row, 1)));
    return folders;
  }

  // Who would stand without a panel or sound.
  std::string usersNote() {
    return aliasUsersNote(app_, withBackslash(Folder_), "Its panel or sound is used by:");
  }

  void removeRow() {
    auto& list = app_.frmMain.lstAircraft;
    const int row = list.rowOf(row_);
    if (row == 0) return;
    // Edits of what is gone are not asked about.
    if (app_.infoSource.row == row_) ClearInfoTab(app_);
    list.remove(row);
    SaveACList(app_);
    list.select(std::min(row, list.count()));
    list.ensureVisible(list.selected());
    lstAircraft_Click(app_);
    fillEmptyTexts(app_);
  }

  // After a deletion that did not come to its end.
  void showWhatStands() {
    auto& list = app_.frmMain.lstAircraft;
    const int row = list.rowOf(row_);
    if (row == 0) return;
    list.setSmallIcon(row, placeIcon(PlaceMask(app_, FolderName_)));
    if (list.selected() == row) lstAircraft_Click(app_);
  }

  App& app_;
  const bool inSimulator_;
  const ui::ListView::RowId row_;
  const std::string Name_, Folder_, FolderName_;
};

}  // namespace

std::string askRowName(App& app, const std::string& prompt, const std::string& title,
                       const std::string& proposed) {
  std::string offered = storable(proposed, app.codePage);
  for (;;) {
    const auto answer = app.windows.inputBox(prompt, title, offered);
    std::string name = inOneField(composed(answer.value_or("")));
    const std::string lacking = app.codePage.lacking(name);
    if (lacking.empty()) return name;
    app.windows.messageBox({notStorable(name, lacking), ui::BoxIcon::exclamation});
    offered = storable(name, app.codePage);
  }
}

void btnAddAC_Click(App& app) {
  if (app.ACRoot.empty() || !mayLeaveInfo(app)) return;
  const std::string view = app.ListDir;
  const auto folder = chooseFolder(app, app.frmMain, app.ACRoot, "Tolmere Settings");
  if (!folder) return;
  if (!isAircraftFolder(app, *folder)) {
    app.windows.messageBox({"This is not a valid Aircraft folder!", ui::BoxIcon::exclamation});
    return;
  }
  const std::string name = askRowName(app, "Aircraft Name:", "Add Aircraft", FolderName(*folder));
  if (app.ListDir != view) return;  // another list came up meanwhile
  auto& list = app.frmMain.lstAircraft;
  const auto id = list.id(list.add(name, {*folder}));
  setMissingIcons(app);
  SaveACList(app);
  const int row = list.rowOf(id);
  list.select(row);
  list.ensureVisible(row);
  lstAircraft_Click(app);
}

void btnDelAC_Click(App& app) {
  const int row = app.frmMain.lstAircraft.selected();
  if (row != 0) Deletion(app, row).run();
}

void mnuFileImportAC_Click(App& app) {
  auto& list = app.frmMain.lstAircraft;
  const bool empty = list.count() == 0;
  import(app, list, WalkScanAC, SaveACList, "aircraft");
  setMissingIcons(app);
  if (empty) lstAircraft_Click(app);
}

void mnuFileImportPN_Click(App& app) {
  import(app, app.frmMain.lstPanel, WalkScanPN, SavePNList, "panels");
}

void mnuFileImportSN_Click(App& app) {
  import(app, app.frmMain.lstSound, WalkScanSN, SaveSNList, "sounds");
}

}  // namespace skv
