#include "aircraft/aircraft_cfg.h"

#include <array>

#include "aircraft/alias_tabs.h"
#include "core/disk_queries.h"
#include "core/messages.h"

namespace skv {

namespace {

constexpr const char* currentFile = "Aircraft.cfg";
constexpr const char* backupFile = "Aircraft.preSKV.cfg";

struct VariationKey {
  const char* key;
  ui::TextBox ui::FrmMain::*box;
};

// In the order in which they are read and written.
constexpr std::array<VariationKey, 13> variationKeys{{
    {"title", &ui::FrmMain::txtACTitle},
    {"sim", &ui::FrmMain::txtSim},
    {"model", &ui::FrmMain::txtModel},
    {"panel", &ui::FrmMain::txtPanel},
    {"sound", &ui::FrmMain::txtSound},
    {"texture", &ui::FrmMain::txtTexture},
    {"atc_id", &ui::FrmMain::txtATCID},
    {"atc_airline", &ui::FrmMain::txtATCAirline},
    {"atc_flight_number", &ui::FrmMain::txtATCFlight},
    {"ui_manufacturer", &ui::FrmMain::txtUIManufacturer},
    {"ui_type", &ui::FrmMain::txtUIType},
    {"ui_variation", &ui::FrmMain::txtUIVariation},
    {"description", &ui::FrmMain::txtACDescription},
}};

std::string variationSection(int number) { return "fltsim." + std::to_string(number); }

// The section of the selected variation, "" without one.
std::string selectedSection(App& app) {
  const int row = app.frmMain.lstACVersions.selected();
  return row == 0 ? std::string() : variationSection(row - 1);
}

// A pasted line break, in the form in which the file writes one.
std::string withoutLineBreaks(const std::string& text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
    if (text[i] == '\r' || text[i] == '\n')
      result += "\\n";
    else
      result += text[i];
  }
  return result;
}

void showVariation(App& app, ProfileReader& reader) {
  FillInfoTab(app, reader);
  FillPanelTab(app, reader);
  FillSoundTab(app, reader);
}

void editConfig(App& app, const std::string& path) {
  const Outcome started = app.platform.shell.editText(path);
  if (!started.ok()) tellFailure(app, "\"" + path + "\" cannot be shown.", started);
}

// A configuration file in the folder that the variation's value names. The two spellings of the
// file name are the ones that the editor has always shown in its title.
void editPartConfig(App& app, const std::string& part, const std::string& value,
                    const std::string& file, const std::string& plainFile) {
  const std::string folder = selectedAircraftFolder(app);
  if (folder.empty()) return;
  editConfig(app, folder + partFolder(part, value) + (value.empty() ? plainFile : file));
}

}  // namespace

std::string partFolder(const std::string& part, const std::string& value) {
  return value.empty() ? part + "\\" : part + "." + value + "\\";
}

std::string selectedAircraftFolder(App& app) {
  const auto& list = app.frmMain.lstAircraft;
  return list.selected() == 0 ? std::string() : list.subItem(list.selected(), 1);
}

void FillACVersions(App& app, ProfileReader& reader) {
  const std::string folder = selectedAircraftFolder(app);
  auto& versions = app.frmMain.lstACVersions;
  if (folder.empty()) return;
  versions.clear();
  for (int number = 0;; ++number) {
    std::string title = reader.read(folder + "aircraft.cfg", variationSection(number), "title");
    if (title.empty()) return;
    std::string shown = std::to_string(number);
    if (shown.size() < 2) shown.insert(0, "0");
    versions.add(std::move(shown), {std::move(title)});
  }
}

void FillInfoTab(App& app, ProfileReader& reader) {
  const std::string folder = selectedAircraftFolder(app);
  const std::string section = selectedSection(app);
  if (folder.empty() || section.empty()) return;
  for (const VariationKey& key : variationKeys)
    (app.frmMain.*key.box).text = reader.read(folder + "aircraft.cfg", section, key.key);
}

void ClearInfoTab(App& app) {
  app.frmMain.lstACVersions.clear();
  for (const VariationKey& key : variationKeys) (app.frmMain.*key.box).text = "";
}

void lstAircraft_Click(App& app) {
  ProfileReader reader(app.files(), app.codePage);
  ClearInfoTab(app);
  FillACVersions(app, reader);
  showVariation(app, reader);
}

void lstAircraft_ItemClick(App& app) { lstAircraft_Click(app); }

void lstACVersions_Click(App& app) {
  ProfileReader reader(app.files(), app.codePage);
  showVariation(app, reader);
}

std::string txtACDescription_KeyPress(int& key) {
  constexpr int enter = 13;
  if (key != enter) return {};
  key = 0;
  return "\\n";
}

void btnSaveACInfo_Click(App& app) {
  const std::string folder = selectedAircraftFolder(app);
  const std::string section = selectedSection(app);
  if (folder.empty() || section.empty()) return;
  FileSystem& files = app.files();

  if (!PathExists(files, folder + backupFile)) {
    const Outcome kept = files.copyFile(folder + currentFile, folder + backupFile);
    if (!kept.ok()) {
      tellFailure(app, "The aircraft is not saved, since its original cannot be kept.", kept);
      return;
    }
  }
  const auto bytes = files.readFile(folder + currentFile);
  Outcome saved = bytes.outcome();
  if (bytes.ok()) {
    Profile cfg(bytes.value(), app.codePage);
    for (const VariationKey& key : variationKeys)
      cfg.write(section, key.key, withoutLineBreaks((app.frmMain.*key.box).text));
    saved = files.replaceFile(folder + currentFile, cfg.bytes());
  }
  if (!saved.ok()) {
    // The boxes keep what was typed.
    tellFailure(app, "The aircraft could not be saved.", saved);
    return;
  }
  lstAircraft_Click(app);
}

void btnACRestoreOriginal_Click(App& app) {
  constexpr const char* title = "Reset original Aircraft";
  const std::string folder = selectedAircraftFolder(app);
  if (folder.empty()) return;
  if (app.windows.messageBox({"Are you sure to reset Aircraft.cfg to original?",
                              ui::BoxIcon::warning, ui::BoxButtons::yesNo, title}) !=
      ui::Answer::yes)
    return;
  // One step takes the place of deleting and renaming, so that one of the two files always stands.
  const Outcome restored = app.files().moveFile(folder + backupFile, folder + currentFile);
  if (!restored.ok()) {
    tellFailure(app, "The aircraft could not be reset.", restored);
    return;
  }
  app.windows.messageBox(
      {"Aircraft reset to original version!", ui::BoxIcon::information, ui::BoxButtons::ok, title});
  app.frmMain.btnACRestoreOriginal.enabled = false;
}

void mnuViewACCfgAC_Click(App& app) {
  const std::string folder = selectedAircraftFolder(app);
  if (!folder.empty()) editConfig(app, folder + "\\" + currentFile);
}

void mnuViewACCfgPN_Click(App& app) {
  editPartConfig(app, "panel", app.frmMain.txtPanel.text, "panel.cfg", "Panel.cfg");
}

void mnuViewACCfgSN_Click(App& app) {
  editPartConfig(app, "sound", app.frmMain.txtSound.text, "sound.cfg", "Sound.cfg");
}

void mnuViewACCfgMD_Click(App& app) {
  editPartConfig(app, "model", app.frmMain.txtModel.text, "model.cfg", "Model.cfg");
}

}  // namespace skv
