#include "ui/settings.h"

#include <algorithm>

#include "aircraft/aircraft_views.h"
#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/folder_guard.h"
#include "core/long_operation.h"
#include "core/messages.h"
#include "core/settings_keys.h"
#include "scenery/scenery_view.h"
#include "ui/dialogs/dir_select.h"
#include "ui/dialogs/folder_text.h"
#include "ui/folder_fields.h"
#include "ui/mail_settings.h"
#include "ui/move_packages.h"
#include "ui/startup.h"

namespace skv {

namespace {

constexpr const char* boxTitle = "FS Skyvault - Settings";

constexpr const char* introduction =
    "FS Skyvault looks after the add-ons of one Flight Simulator 2002, so first name the folder in "
    "which the simulator is installed. The right folder is known by the file Scenery.cfg in "
    "it.\n\n";
constexpr const char* noneFound =
    "None was found in the usual places of this computer and its Wine prefixes. If the simulator "
    "is "
    "installed, choose its folder with the button \"...\"; if not, install it with Wine first.";
constexpr const char* oneFound = "One was found, and its folder stands below.";
constexpr const char* severalFound = "Several were found. Choose the one to look after:";

// Picks a folder into a field and answers whether one was chosen. `start` is where the picker
// opens, "" for the field's own folder.
bool browse(App& app, ui::TextBox& field, const std::string& whenEmpty,
            const std::string& start = {}) {
  if (field.text == "") field.text = whenEmpty;
  const auto chosen = chooseFolder(app, app.frmSettings, start.empty() ? field.text.get() : start,
                                   "Tolmere Settings");
  if (chosen) field.text = *chosen;
  showFolderStates(app);
  return chosen.has_value();
}

// Puts a folder below the simulator's into a field that is empty, or that still holds the last one.
void propose(App& app, ui::TextBox& field, std::string& proposed, const char* name) {
  if (field.text != "" && field.text != proposed) return;
  const auto root = folderFromText(app, app.frmSettings.txtFSRoot.text.get());
  if (!root.ok()) return;
  proposed = root.value() + name;
  field.text = proposed;
}
void proposeHangar(App& app) {
  propose(app, app.frmSettings.txtHangarDir, app.frmSettings.proposedHangar, "SKV-Hangar\\");
}
void proposePacks(App& app) {
  propose(app, app.frmSettings.txtPacksDir, app.frmSettings.proposedPacks, "SKV-Packages\\");
}

// On a first start, what stands on this computer is what the user most likely wants.
void proposeSimulators(App& app, bool first) {
  auto& form = app.frmSettings;
  const auto found = first ? app.platform.simulators.find() : std::vector<std::string>();
  form.cmbFound.items = found;
  form.cmbFound.visible = found.size() > 1;
  form.cmbFound.listIndex = found.empty() ? -1 : 0;
  form.lblIntro.caption = introduction + std::string(found.empty()       ? noneFound
                                                     : found.size() == 1 ? oneFound
                                                                         : severalFound);
  if (found.empty()) return;
  form.txtFSRoot.text = found.front();
  proposeHangar(app);
  proposePacks(app);
}

void refuse(App& app, const std::string& text, ui::BoxIcon icon = ui::BoxIcon::exclamation) {
  app.windows.messageBox({text, icon, ui::BoxButtons::ok, boxTitle});
}

// Brings a field's text into its final form. What cannot be a folder is refused, by the field's
// name.
bool takeFolder(App& app, const FolderField& field) {
  ui::TextBox& box = app.frmSettings.*field.box;
  if (box.text == "" && field.mayBeEmpty) return true;
  const auto folder = folderFromText(app, box.text.get());
  if (folder.ok()) {
    box.text = folder.value();
    return true;
  }
  refuse(app, box.label + "\r\n\"" + box.text.get() + "\" " + folder.outcome().description());
  return false;
}

bool takeFolders(App& app) {
  const auto& [root, others] = std::pair(folderFields.front(), std::span(folderFields).subspan(1));
  if (!takeFolder(app, root)) return false;
  const std::string& folder = app.frmSettings.txtFSRoot.text;
  const auto known = app.files().attributes(folder + simulatorsMark);
  if (!known.ok() && presenceBy(known.outcome()) == Presence::unknown) {
    tellFailure(app,
                "Whether '" + folder + "' is the FS2002 folder cannot be told:", known.outcome());
    return false;
  }
  if (!known.ok()) {
    refuse(app, "'" + folder + "' is not the FS2002 folder!", ui::BoxIcon::none);
    return false;
  }
  for (const FolderField& field : others)
    if (!takeFolder(app, field)) return false;
  return true;
}

// Stores all or none: folders that go with one another must not come from two dialogs. With them it
// stores that the Packages have yet to come, so that a run that ends here is no reason to forget
// it.
bool storeFolders(App& app) {
  const auto& form = app.frmSettings;
  std::vector<std::string> before;
  std::vector<StoredValue> values;
  const auto put = [&](const Setting& key, const std::string& value) {
    before.push_back(readSetting(app, key));
    values.push_back({key.section, key.key, value});
  };
  for (const FolderField& field : folderFields) put(field.key, (form.*field.box).text);
  put(setting::OwnDrive, app.platform.environment.ownDrive);
  if (!equalsIgnoringCase(form.OldPacksDir, form.txtPacksDir.text.get()))
    put(setting::PacksMoveFrom, form.OldPacksDir);
  const Outcome stored = app.platform.settings.writeTogether(values);
  if (!stored.ok()) {
    // They may be in the file all the same.
    for (std::size_t i = 0; i < values.size(); ++i) values[i].value = before[i];
    app.platform.settings.writeTogether(values).skipped();
    tellFailure(app, "The settings could not be stored, and nothing has been changed:", stored);
    return false;
  }
  for (const FolderField& field : folderFields) app.*field.global = (form.*field.box).text;
  return true;
}

void make(App& app, const std::string& folder) {
  if (PathExists(app.files(), folder)) return;
  MakePath(app.files(), folder);
  if (!folderExists(app.files(), folder)) refuse(app, "\"" + folder + "\" could not be made.");
}

void makeSceneryLib(App& app) {
  const std::string& library = app.SceneryLib;
  if (library.empty() || presenceOf(app.files(), library) != Presence::absent) return;
  for (const char* part : {"", "Scenery\\", "Main\\"}) make(app, library + part);
}

struct Folders {
  std::string FSRoot, HangarDir, PacksDir, SceneryLib;
  bool operator==(const Folders&) const = default;
};
Folders foldersOf(const App& app) {
  return {app.FSRoot, app.HangarDir, app.PacksDir, app.SceneryLib};
}

// Rows and icons are those of the folders.
void reloadLists(App& app) {
  reloadAircraftList(app);
  if (app.frmMain.frameScenery.visible && !app.ending) mnuViewFSScenery_Click(app);
}

void hide(App& app) {
  app.windows.hide(app.frmSettings);
  forgetPasswords(app);
}

}  // namespace

bool lacksFolders(const App& app) {
  return std::ranges::any_of(folderFields, [&app](const FolderField& field) {
    return !field.mayBeEmpty && readSetting(app, field.key).empty();
  });
}

void runSettings(App& app) {
  auto& form = app.frmSettings;
  frmSettings_Form_Load(app);
  app.windows.show(form, &app.frmMain);
  app.windows.yieldUntil([&form] { return !form.visible; });
  cancelFolderChoice(app);
  app.windows.unload(form);
}

void mnuFileSettings_Click(App& app) {
  if (app.frmSettings.visible) {
    app.windows.setFocus(app.frmSettings.btnOK);
    return;
  }
  runSettings(app);
}

void findSceneryPacksPath(App& app) {
  app.SceneryPacksPath = readSetting(app, setting::SceneryPacksPath, app.PacksDir + "Scenery\\");
  const std::string& path = app.SceneryPacksPath;
  // Without a Packages folder it would be a stray one in the current folder.
  if (path.find(':') == std::string::npos) return;
  if (presenceOf(app.files(), path) != Presence::absent) return;
  if (folderExists(app.files(), folderAbove(path)) || mayBeMadeUnasked(app, path))
    MakePath(app.files(), path);
}

void frmSettings_Form_Load(App& app) {
  auto& form = app.frmSettings;
  form.tabSettings.tabs = std::vector<std::string>{"Locations", "EMail"};
  form.tabSettings.value = 0;
  tabSettings_Click(app, 0);
  form.enabled = true;
  const bool first = app.starting && readSetting(app, setting::FSRoot).empty();
  form.lblIntro.visible = first;
  form.btnQuit.visible = app.starting && lacksFolders(app);
  for (const FolderField& field : folderFields)
    (form.*field.box).text = readSetting(app, field.key, field.fallback);
  loadMailSettings(app);
  form.OldPacksDir = form.txtPacksDir.text;
  form.proposedHangar.clear();
  form.proposedPacks.clear();
  proposeSimulators(app, first);
  showFolderStates(app);
}

void cmbFound_Click(App& app) {
  auto& form = app.frmSettings;
  form.txtFSRoot.text = form.cmbFound.items->at(static_cast<std::size_t>(form.cmbFound.listIndex));
  proposeHangar(app);
  proposePacks(app);
  showFolderStates(app);
}

void frmSettings_Form_Unload(App& app) {
  cancelFolderChoice(app);
  hide(app);
  if (!app.ending && !app.starting) app.frmMain.visible = true;
}

void tabSettings_Click(App& app, int index) {
  if (index != 0 && index != 1) return;
  app.frmSettings.frameLocations.visible = index == 0;
  app.frmSettings.frameEmail.visible = index == 1;
  if (index == 1) listOutlookFolders(app);
}

void showFolderStates(App& app) {
  auto& form = app.frmSettings;
  for (const FolderField& field : folderFields) {
    const FolderState state = stateOf(app, field);
    ui::Label& label = form.*field.state;
    label.caption = state.text;
    label.colour = state.wrong ? wrongColour : ui::defaultColour;
  }
}

void txtFSRoot_LostFocus(App& app) {
  auto& form = app.frmSettings;
  folderField_LostFocus(app, form.txtFSRoot);
  if (form.txtFSRoot.text != "") form.txtFSRoot.text = withBackslash(form.txtFSRoot.text.get());
  proposeHangar(app);
  proposePacks(app);
  showFolderStates(app);
}

void txtHangarDir_GotFocus(App& app) {
  proposeHangar(app);
  showFolderStates(app);
}

void folderField_LostFocus(App& app, ui::TextBox& field) {
  if (const auto folder = folderFromText(app, field.text.get()); folder.ok())
    field.text = folder.value();
  showFolderStates(app);
}

void btnBrowse_Click(App& app) {
  auto& form = app.frmSettings;
  if (!browse(app, form.txtFSRoot, "C:\\")) return;
  // The simulator's folder holds at once, before the dialog is accepted.
  app.FSRoot = form.txtFSRoot.text;
  if (!form.proposedHangar.empty()) proposeHangar(app);
  if (!form.proposedPacks.empty()) proposePacks(app);
  showFolderStates(app);
}

void btnBrowseHangar_Click(App& app) {
  auto& form = app.frmSettings;
  browse(app, form.txtHangarDir, form.txtFSRoot.text + "SKV-Hangar\\");
}

void btnBrowsePacks_Click(App& app) {
  auto& form = app.frmSettings;
  browse(app, form.txtPacksDir, form.txtHangarDir.text + "Packages\\");
}

void btnBrowsePanel_Click(App& app) {
  auto& form = app.frmSettings;
  const std::string aircraft = form.txtFSRoot.text + "aircraft\\";
  browse(app, form.txtCentralPanel, aircraft + "Panels\\", aircraft);
}

void Command1_Click(App& app) {
  auto& form = app.frmSettings;
  browse(app, form.txtSceneryLib, form.txtHangarDir.text + "SceneryLib\\");
}

void frmSettings_btnOK_Click(App& app) {
  auto& form = app.frmSettings;
  cancelFolderChoice(app);
  if (operationRuns(app)) {
    refuse(app, "FS Skyvault is still at work. The settings can be stored when it has finished.");
    return;
  }
  if (!mayLeaveSceneries(app)) return;
  // Not the globals: browsing has changed one already.
  const Folders before{readSetting(app, setting::FSRoot), readSetting(app, setting::HangarDir),
                       readSetting(app, setting::PacksDir), readSetting(app, setting::SceneryLib)};
  if (!takeFolders(app) || !storeFolders(app)) return;

  makeSceneryLib(app);
  if (!equalsIgnoringCase(form.OldPacksDir, app.PacksDir)) {
    make(app, app.PacksDir);
    findSceneryPacksPath(app);
    form.OldPacksDir = app.PacksDir;
    offerToMovePackages(app);
  }
  if (!(foldersOf(app) == before) && !app.ending) reloadLists(app);

  if (!storeMailSettings(app) || app.ending) return;
  if (!app.starting) app.frmMain.visible = true;
  hide(app);
}

void frmSettings_btnQuit_Click(App& app) {
  app.ending = true;
  cancelFolderChoice(app);
  hide(app);
}

}  // namespace skv
