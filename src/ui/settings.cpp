#include "ui/settings.h"

#include "aircraft/aircraft_views.h"
#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/long_operation.h"
#include "core/settings_keys.h"
#include "core/walktree.h"
#include "ui/dialogs/dir_select.h"

namespace skv {

namespace {

constexpr const char* defaultFSRoot = "C:\\Program Files\\Microsoft Games\\FS2002\\";

struct StoredField {
  Setting key;
  ui::TextBox ui::FrmSettings::*box;
  const char* fallback;
  std::string App::*global;  // null for a value that is read where it is used
};

// In the order in which they are stored.
constexpr StoredField folderFields[] = {
    {setting::FSRoot, &ui::FrmSettings::txtFSRoot, defaultFSRoot, &App::FSRoot},
    {setting::HangarDir, &ui::FrmSettings::txtHangarDir, "", &App::HangarDir},
    {setting::PacksDir, &ui::FrmSettings::txtPacksDir, "", &App::PacksDir},
    {setting::PanelsDir, &ui::FrmSettings::txtCentralPanel, "", &App::PanelsDir},
    {setting::SceneryLib, &ui::FrmSettings::txtSceneryLib, "", &App::SceneryLib},
};
constexpr StoredField mailFields[] = {
    {setting::POPUserName, &ui::FrmSettings::txtPOPUserName, "", nullptr},
    {setting::POPPassword, &ui::FrmSettings::txtPOPPassword, "", nullptr},
    {setting::POPHost, &ui::FrmSettings::txtPOPHost, "", nullptr},
    {setting::SMTPHost, &ui::FrmSettings::txtSMTPHost, "", nullptr},
    {setting::OutlookFolder, &ui::FrmSettings::txtOutlookFolder, "", nullptr},
};

// Picks a folder into a field and answers whether one was chosen. `start` is where the picker
// opens,
// "" for the field's own folder.
bool browse(App& app, ui::TextBox& field, const std::string& whenEmpty,
            const std::string& start = {}) {
  auto& picker = app.frmDirSelect;
  if (field.text == "") field.text = whenEmpty;
  const FolderPick pick =
      pickFolder(app, app.frmSettings, start.empty() ? field.text.get() : start);
  if (pick == FolderPick::busy) return false;
  const std::string chosen = trim(picker.txtDir.text.get());
  app.windows.unload(picker);
  if (pick == FolderPick::cancelled) return false;
  if (chosen.empty() || !PathExists(app.files(), chosen)) {
    app.windows.messageBox({"You must specify a valid location!", ui::BoxIcon::exclamation,
                            ui::BoxButtons::ok, "Tolmere Settings"});
    return false;
  }
  field.text = withBackslash(chosen);
  return true;
}

bool holdsPackages(App& app, const std::string& folder) {
  const auto listing = app.files().list(folder);
  if (!listing.ok()) return false;
  for (const FolderEntry& entry : listing.value())
    if (!entry.folder && upper(entry.name).ends_with(".ZIP")) return true;
  return false;
}

// Offers to take the Packages along to a changed folder.
void movePackages(App& app) {
  auto& form = app.frmSettings;
  if (!PathExists(app.files(), app.PacksDir)) MakePath(app.files(), app.PacksDir);
  if (form.OldPacksDir.empty() || !holdsPackages(app, form.OldPacksDir)) return;
  if (app.windows.messageBox({"Move existing Packages to the new Packages Folder?",
                              ui::BoxIcon::question, ui::BoxButtons::yesNo}) != ui::Answer::yes)
    return;
  const DisabledForm busy(form);
  const HourglassPointer pointer(app);
  WalkTree(app, form.OldPacksDir, app.PacksDir, WalkMove, true);
  // A link is not walked through, so it must not be taken away either.
  const std::string old = withoutBackslash(form.OldPacksDir);
  if (!app.files().isLink(old)) app.files().removeFolder(old).skipped();
  app.error.clear();
  form.OldPacksDir.clear();
  app.frmMain.lblStatus.caption = "";
  reloadAircraftList(app);
}

}  // namespace

void runSettings(App& app) {
  auto& form = app.frmSettings;
  frmSettings_Form_Load(app);
  app.windows.show(form, &app.frmMain);
  app.windows.yieldUntil([&form] { return !form.visible; });
  app.windows.unload(form);
}

void mnuFileSettings_Click(App& app) {
  if (app.frmSettings.visible) {
    app.windows.setFocus(app.frmSettings.btnOK);
    return;
  }
  runSettings(app);
}

void frmSettings_Form_Load(App& app) {
  auto& form = app.frmSettings;
  form.tabSettings.tabs = std::vector<std::string>{"Locations", "EMail"};
  form.tabSettings.value = 0;
  tabSettings_Click(app, 0);
  form.enabled = true;
  for (const StoredField& field : folderFields)
    (form.*field.box).text = readSetting(app, field.key, field.fallback);
  for (const StoredField& field : mailFields)
    (form.*field.box).text = readSetting(app, field.key, field.fallback);
  form.OldPacksDir = form.txtPacksDir.text;
}

void frmSettings_Form_Unload(App& app) {
  app.windows.hide(app.frmSettings);
  if (!app.ending && !app.starting) app.frmMain.visible = true;
}

void tabSettings_Click(App& app, int index) {
  if (index != 0 && index != 1) return;
  app.frmSettings.frameLocations.visible = index == 0;
  app.frmSettings.frameEmail.visible = index == 1;
}

void txtFSRoot_LostFocus(App& app) {
  auto& form = app.frmSettings;
  form.txtFSRoot.text = withBackslash(form.txtFSRoot.text.get());
  txtHangarDir_GotFocus(app);
  if (form.txtPacksDir.text == "") form.txtPacksDir.text = form.txtFSRoot.text + "SKV-Packages\\";
}

void txtHangarDir_GotFocus(App& app) {
  auto& form = app.frmSettings;
  if (form.txtHangarDir.text == "") form.txtHangarDir.text = form.txtFSRoot.text + "SKV-Hangar\\";
}

void btnBrowse_Click(App& app) {
  auto& field = app.frmSettings.txtFSRoot;
  // The simulator's folder holds at once, before the dialog is accepted.
  if (browse(app, field, "C:\\")) app.FSRoot = field.text;
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
  for (ui::TextBox* box : {&form.txtFSRoot, &form.txtHangarDir, &form.txtPacksDir})
    box->text = withBackslash(box->text.get());

  if (!PathExists(app.files(), form.txtFSRoot.text + "Scenery.cfg")) {
    app.windows.messageBox({"'" + form.txtFSRoot.text + "' is not the FS2002 folder!",
                            ui::BoxIcon::none, ui::BoxButtons::ok, "FS Skyvault - Settings"});
    return;
  }
  for (const StoredField& field : folderFields) {
    const std::string& value = (form.*field.box).text;
    writeSetting(app, field.key, value).skipped();
    app.*field.global = value;
  }
  if (!app.SceneryLib.empty() && !PathExists(app.files(), app.SceneryLib)) {
    MakePath(app.files(), app.SceneryLib);
    MakePath(app.files(), app.SceneryLib + "Scenery\\");
    MakePath(app.files(), app.SceneryLib + "Main\\");
  }
  if (!equalsIgnoringCase(form.OldPacksDir, app.PacksDir)) movePackages(app);

  for (const StoredField& field : mailFields)
    writeSetting(app, field.key, (form.*field.box).text).skipped();
  if (!app.starting) app.frmMain.visible = true;
  app.windows.hide(form);
}

}  // namespace skv
