#include "scenery/scenery_view.h"

#include "core/disk_queries.h"
#include "core/folder_guard.h"
#include "core/stores.h"
#include "core/view.h"
#include "scenery/scenery_database.h"
#include "scenery/scenery_import.h"
#include "scenery/scenery_lists.h"
#include "scenery/scenery_order.h"
#include "scenery/scenery_row.h"

namespace skv {

namespace {

// Of two option buttons one is chosen.
void choose(ui::OptionButton& chosen, ui::OptionButton& other) {
  chosen.value = true;
  other.value = false;
}

std::string unreadable(const std::string& file) {
  return file + " could not be read.\nF5 tries again.";
}

// As with the Hangar: none is made in the place of one that a disk which is away would show.
void makeLibrary(App& app) {
  FileSystem& files = app.files();
  if (app.SceneryLib.empty() || presenceOf(files, app.SceneryLib) != Presence::absent ||
      !mayBeMadeUnasked(app, app.SceneryLib))
    return;
  for (const std::string& root : {sceneryRootOf(app.SceneryLib), mainRootOf(app.SceneryLib)})
    MakePath(files, root);
}

void fillEmptyTexts(App& app) {
  auto& form = app.frmMain;
  const std::string settings = "\nFile, Settings (F2) is the place.";
  const auto& database = app.sceneryDatabase;
  if (app.FSRoot.empty())
    form.lstScenery.emptyText = "The simulator's folder is not set." + settings;
  else if (!database.read)
    form.lstScenery.emptyText = unreadable(database.file);
  else if (!database.was)
    form.lstScenery.emptyText =
        database.file + " is not there.\nIf its disk is not mounted, mount it and press F5.";
  else
    form.lstScenery.emptyText = "The scenery database has no areas.";
  if (app.SceneryLib.empty())
    form.lstInactScenery.emptyText = "No folder is set for the scenery library." + settings;
  else if (presenceOf(app.files(), app.SceneryLib) != Presence::there)
    form.lstInactScenery.emptyText = "The scenery library is not there: " + app.SceneryLib +
                                     "\nIf its disk is not mounted, mount it and press F5.";
  else if (!app.librarySource.bytes)
    form.lstInactScenery.emptyText = unreadable(app.librarySource.file);
  else
    form.lstInactScenery.emptyText =
        "No scenery is in the library yet.\nFile, Install Package/ZIP, Scenery unpacks one, "
        "\"Add to Library\" takes a folder, File, Import, Sceneries those of the simulator.";
}

}  // namespace

void mnuViewFSScenery_Click(App& app) {
  const bool entered = !app.frmMain.frameScenery.visible;
  showView(app, View::scenery);
  const unsigned switches = app.viewSwitches;
  app.windows.yield();
  if (app.viewSwitches != switches) return;
  LoadSceneryList(app);
  if (app.viewSwitches != switches) return;
  makeLibrary(app);
  LoadSceneryLibList(app);
  fillEmptyTexts(app);
  showSceneryCommands(app);
  // What had the keyboard is out of sight.
  if (entered) app.windows.setFocus(app.frmMain.lstScenery);
}

bool mayLeaveSceneries(App& app) {
  if (!app.frmMain.frameScenery.visible || !sceneriesDiffer(app)) return true;
  const ui::Answer answer = app.windows.messageBox(
      {.text = "The scenery database has changes that the simulator does not have yet.\r\n\r\n"
               "Do you want to save them?",
       .icon = ui::BoxIcon::question,
       .buttons = ui::BoxButtons::yesNoCancel,
       .defaultButton = ui::DefaultButton::cancel});
  if (answer == ui::Answer::yes) btnFSScenerySave_Click(app);
  return answer == ui::Answer::no || (answer == ui::Answer::yes && !sceneriesDiffer(app));
}

void showSceneryCommands(App& app) {
  auto& form = app.frmMain;
  const auto& areas = form.lstScenery;
  const auto& library = form.lstInactScenery;
  const int area = areas.selected();
  const bool librarySet = !app.SceneryLib.empty();
  const bool hasFolder =
      library.selected() != 0 &&
      !leafOf(library.subItem(library.selected(), sceneryColumn::Folder)).empty();
  const bool differs = sceneriesDiffer(app);
  form.lblSceneryChanged.visible = differs;
  const auto& unreached = app.sceneryDatabase.unreached;
  const std::size_t unlisted = unreached ? unreached->size() : 0;
  form.lblSceneryUnreached.caption =
      unlisted == 1 ? "1 area of Scenery.cfg is not listed"
                    : std::to_string(unlisted) + " areas of Scenery.cfg are not listed";
  form.lblSceneryUnreached.visible = unlisted > 0;
  form.btnFSScenerySave.enabled = differs;
  form.btnSCup.enabled = area > 1;
  form.btnSCdn.enabled = area != 0 && area < areas.count();
  form.btnFSScenDel.enabled = area != 0 && areas.colour(area) != builtInColour;
  const bool areaHasFolder = area != 0 && !areas.subItem(area, sceneryColumn::Folder).empty();
  for (ui::MenuItem* entry : {&form.mnuSCOpen, &form.mnuSCCopy}) entry->enabled = areaHasFolder;
  for (ui::MenuItem* entry : {&form.mnuSLOpen, &form.mnuSLCopy}) entry->enabled = hasFolder;
  form.btnSLDel.enabled = library.selected() != 0;
  form.btnAddSLtoFS.enabled = hasFolder;
  if (form.frameScenery.visible)
    for (ui::MenuItem* entry : {&form.mnuFilePackage, &form.mnuFileUnpackage})
      entry->enabled = hasFolder;

  const bool folderPicked = librarySet && !form.ftreeScenery.folder->empty();
  for (ui::OptionButton* option : {&form.optCopy, &form.optMove, &form.optScenery})
    option->enabled = folderPicked;
  form.optTextures.enabled = folderPicked && hasFolder;
  form.btnAddToSL.enabled = folderPicked && (form.optScenery.value || hasFolder);

  const bool shown = form.frameScenery.visible;
  form.mnuFileInstallSC.enabled = shown && librarySet;
  form.mnuFileImportSceneries.enabled = shown && librarySet && hasAddonSceneries(app);
}

void optCopy_Click(App& app) { choose(app.frmMain.optCopy, app.frmMain.optMove); }
void optMove_Click(App& app) { choose(app.frmMain.optMove, app.frmMain.optCopy); }
void optScenery_Click(App& app) { choose(app.frmMain.optScenery, app.frmMain.optTextures); }
void optTextures_Click(App& app) { choose(app.frmMain.optTextures, app.frmMain.optScenery); }

}  // namespace skv
