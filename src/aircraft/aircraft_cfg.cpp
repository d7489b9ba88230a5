#include "aircraft/aircraft_cfg.h"

#include <array>

#include "aircraft/alias_tabs.h"
#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/kept_original.h"
#include "core/messages.h"

namespace skv {

namespace {

struct VariationKey {
  const char* key;
  ui::TextBox ui::FrmMain::*box;
};

// In the order in which they are read and written. The first one's value names the variation.
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

constexpr const char* notSaved = "The aircraft could not be saved.";

std::string variationSection(int number) { return "fltsim." + std::to_string(number); }
std::string sectionOfRow(int row) { return variationSection(row - 1); }

std::string cfgOf(const std::string& folder) { return folder + "aircraft.cfg"; }

std::string unreadable(const std::string& file, const Outcome& why) {
  return presenceBy(why) == Presence::absent
             ? "\"" + file + "\" is not there."
             : "\"" + file + "\" could not be read.\r\n" + why.description();
}

// A box's text with a pasted line break in the form in which the file writes one.
std::string textToStore(const ui::TextBox& box) {
  const std::string& text = box.text;
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

std::vector<std::string> textsToStore(const App& app) {
  std::vector<std::string> texts;
  texts.reserve(std::size(variationKeys));
  for (const VariationKey& key : variationKeys) texts.push_back(textToStore(app.frmMain.*key.box));
  return texts;
}

// Whether the boxes hold something that the file does not.
bool isEdited(const App& app) {
  return !app.infoSource.values.empty() && textsToStore(app) != app.infoSource.values;
}

// Whether the selected rows are those that the boxes were filled from.
bool showsSource(const App& app) {
  const auto& list = app.frmMain.lstAircraft;
  return list.selected() != 0 && list.id(list.selected()) == app.infoSource.row &&
         app.frmMain.lstACVersions.selected() == app.infoSource.variation;
}

void selectSource(App& app) {
  auto& list = app.frmMain.lstAircraft;
  list.select(list.rowOf(app.infoSource.row));
  list.ensureVisible(list.selected());
  auto& versions = app.frmMain.lstACVersions;
  versions.select(app.infoSource.variation);
  versions.ensureVisible(versions.selected());
}

// What has something to do for the selected row takes input, and nothing else.
void enableByRow(App& app) {
  auto& form = app.frmMain;
  const std::string folder = selectedAircraftFolder(app);
  const bool filled = !app.infoSource.values.empty();
  for (const VariationKey& key : variationKeys) (form.*key.box).enabled = filled;
  form.btnSaveACInfo.enabled = filled;
  for (ui::MenuItem* entry : {&form.mnuViewACCfgPN, &form.mnuViewACCfgSN, &form.mnuViewACCfgMD})
    entry->enabled = filled;
  for (ui::MenuItem* entry :
       {&form.mnuViewACCfgAC, &form.mnuListOpen, &form.mnuListCfg, &form.mnuListCopy})
    entry->enabled = !folder.empty();
  form.mnuListRename.enabled = form.lstAircraft.selected() != 0;
  form.btnDelAC.enabled = form.lstAircraft.selected() != 0;
  form.mnuFileSynchPN.enabled =
      form.frameAircraft.visible && !app.PanelsDir.empty() && !app.HangarDir.empty();
  form.btnHangar.enabled = isElementName(FolderName(folder));
  form.mnuListHangar.enabled = form.btnHangar.enabled.get();
  if (form.frameAircraft.visible)
    for (ui::MenuItem* entry : {&form.mnuFilePackage, &form.mnuFileUnpackage})
      entry->enabled = form.btnHangar.enabled.get();
}

void showVariation(App& app, ProfileReader& reader) {
  FillInfoTab(app, reader);
  FillPanelTab(app, reader);
  FillSoundTab(app, reader);
}

// Shows the selected aircraft as the disk has it, by its first variation or, where it has as many,
// another one.
void showAircraft(App& app, int variation = 0) {
  ProfileReader reader(app.files(), app.codePage);
  ClearInfoTab(app);
  FillACVersions(app, reader);
  auto& versions = app.frmMain.lstACVersions;
  if (variation > 1 && variation <= versions.count()) {
    versions.select(variation);
    versions.ensureVisible(variation);
  }
  showVariation(app, reader);
}

// Whether another row may be shown.
bool mayShowAnother(App& app) {
  if (!isEdited(app)) return true;
  if (showsSource(app)) return false;  // a click on the row that the edits belong to
  if (mayLeaveInfo(app)) return true;
  selectSource(app);
  return false;
}

// Writes the boxes into the file that they were filled from.
Outcome writeInfo(App& app) {
  const InfoSource& source = app.infoSource;
  const auto refused = [](const std::string& why) {
    return Outcome::withText(err::pathFileAccess, why);
  };
  const auto bytes = app.files().readFile(cfgOf(source.folder));
  if (!bytes.ok()) return bytes.outcome();
  Profile cfg(bytes.value(), app.codePage);
  const std::string section = sectionOfRow(source.variation);
  for (std::size_t i = 0; i < variationKeys.size(); ++i)
    if (cfg.read(section, variationKeys[i].key) != source.values[i])
      return refused("\"" + cfgOf(source.folder) +
                     "\" has changed since it was shown. View, Refresh (F5) shows it as it is.");

  const std::vector<std::string> texts = textsToStore(app);
  for (std::size_t i = 0; i < variationKeys.size(); ++i) {
    // What is as it was may be more than a box can show.
    if (texts[i] == source.values[i] && !texts[i].empty()) continue;
    if (const std::string lacking = app.codePage.lacking(texts[i]); !lacking.empty())
      return refused(notStorable(texts[i], lacking));
    if (!cfg.write(section, variationKeys[i].key, texts[i]))
      return refused("\"" + texts[i] + "\" cannot be stored.");
  }
  if (cfg.read(section, variationKeys.front().key).empty())
    return refused(
        "A variation needs a title: the simulator would show neither this one nor those "
        "behind it.");
  return changeKeepingOriginal(app.files(), source.folder + aircraftCfg,
                               source.folder + originalAircraftCfg, cfg.bytes());
}

// Success leaves the boxes with nothing to save. A failure is told, and they keep what was typed.
bool saveInfo(App& app) {
  const Outcome saved = writeInfo(app);
  if (saved.ok()) {
    app.infoSource.values = textsToStore(app);
    return true;
  }
  app.frmMain.btnACRestoreOriginal.enabled =
      PathExists(app.files(), app.infoSource.folder + originalAircraftCfg);
  tellFailure(app, notSaved, saved);
  return false;
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

std::string variationValue(const App& app, std::string_view key) {
  const auto& values = app.infoSource.values;
  for (std::size_t i = 0; i < values.size(); ++i)
    if (variationKeys[i].key == key) return values[i];
  return {};
}

std::string selectedAircraftFolder(App& app) {
  const auto& list = app.frmMain.lstAircraft;
  return list.selected() == 0 ? std::string() : list.subItem(list.selected(), 1);
}

void FillACVersions(App& app, ProfileReader& reader) {
  const std::string folder = selectedAircraftFolder(app);
  auto& versions = app.frmMain.lstACVersions;
  versions.emptyText = "No aircraft is selected.";
  if (folder.empty()) return;
  versions.clear();
  const std::string file = cfgOf(folder);
  for (int number = 0;; ++number) {
    std::string title = reader.read(file, variationSection(number), "title");
    if (title.empty()) break;
    std::string shown = std::to_string(number);
    if (shown.size() < 2) shown.insert(0, "0");
    versions.add(std::move(shown), {std::move(title)});
  }
  versions.ensureVisible(versions.selected());
  const Outcome& read = reader.outcome(file);
  versions.emptyText =
      read.ok() ? "\"" + file + "\" describes no variation." : unreadable(file, read);
}

void FillInfoTab(App& app, ProfileReader& reader) {
  const auto& list = app.frmMain.lstAircraft;
  const std::string folder = selectedAircraftFolder(app);
  const int variation = app.frmMain.lstACVersions.selected();
  InfoSource source;
  source.folder = folder;
  if (folder.empty() || variation == 0) {
    source.refusal = app.frmMain.lstACVersions.emptyText;
  } else {
    source.row = list.id(list.selected());
    source.variation = variation;
    for (const VariationKey& key : variationKeys)
      source.values.push_back(reader.read(cfgOf(folder), sectionOfRow(variation), key.key));
    const Outcome& read = reader.outcome(cfgOf(folder));
    if (!read.ok())
      source.refusal = unreadable(cfgOf(folder), read);
    else if (source.values.front().empty())
      source.refusal = "\"" + cfgOf(folder) + "\" does not hold this variation any more.";
    if (!source.refusal.empty()) {
      source.values.clear();
      app.frmMain.lblStatus.notice = source.refusal;
    }
  }
  for (std::size_t i = 0; i < variationKeys.size(); ++i)
    (app.frmMain.*variationKeys[i].box).text =
        source.values.empty() ? std::string() : source.values[i];
  app.infoSource = std::move(source);
  enableByRow(app);
}

void ClearInfoTab(App& app) {
  app.infoSource = {};
  app.frmMain.lstACVersions.clear();
  for (const VariationKey& key : variationKeys) (app.frmMain.*key.box).text = "";
}

bool mayLeaveInfo(App& app) {
  if (!isEdited(app)) return true;
  const InfoSource asked = app.infoSource;
  // Without its row, there is nothing to stay at.
  const bool stands = app.frmMain.lstAircraft.rowOf(asked.row) != 0;
  const ui::Answer answer = app.windows.messageBox(
      {"Save the changes of \"" + asked.values.front() + "\"?", ui::BoxIcon::question,
       stands ? ui::BoxButtons::yesNoCancel : ui::BoxButtons::yesNo});
  if (answer == ui::Answer::cancel) return false;
  const bool same =
      app.infoSource.folder == asked.folder && app.infoSource.variation == asked.variation;
  return answer != ui::Answer::yes || !same || saveInfo(app) || !stands;
}

void lstAircraft_Click(App& app) {
  if (mayShowAnother(app)) showAircraft(app);
}

void lstAircraft_ItemClick(App& app) { lstAircraft_Click(app); }

void lstACVersions_Click(App& app) {
  if (!mayShowAnother(app)) return;
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
  if (selectedAircraftFolder(app).empty()) return;
  const InfoSource& source = app.infoSource;
  std::string refusal;
  if (source.values.empty())
    refusal = source.refusal;
  else if (!showsSource(app))
    refusal = "The boxes show another one than the selected row.";
  if (source.values.empty() || !refusal.empty()) {
    tellFailure(app, notSaved, Outcome::withText(err::pathFileAccess, refusal));
    return;
  }
  const std::string saved = "Variation " + app.frmMain.lstACVersions.text(source.variation) +
                            " is saved in " + source.folder + aircraftCfg;
  if (!saveInfo(app)) return;
  showAircraft(app);
  app.frmMain.lblStatus.notice = saved;
}

void btnACRestoreOriginal_Click(App& app) {
  constexpr const char* title = "Reset original Aircraft";
  const std::string folder = selectedAircraftFolder(app);
  if (folder.empty()) return;
  std::string question = "Are you sure to reset Aircraft.cfg to original?";
  if (isEdited(app)) question += "\rWhat was changed in the boxes and is not saved goes, too.";
  if (app.windows.messageBox({question, ui::BoxIcon::warning, ui::BoxButtons::yesNo, title}) !=
      ui::Answer::yes)
    return;
  const Outcome restored =
      restoreOriginal(app.files(), folder + aircraftCfg, folder + originalAircraftCfg);
  if (!restored.ok()) {
    tellFailure(app, "The aircraft could not be reset.", restored);
    return;
  }
  showAircraft(app, app.frmMain.lstACVersions.selected());
  app.windows.messageBox(
      {"Aircraft reset to original version!", ui::BoxIcon::information, ui::BoxButtons::ok, title});
}

void mnuViewACCfgAC_Click(App& app) {
  const std::string folder = selectedAircraftFolder(app);
  if (!folder.empty()) editConfig(app, folder + "\\" + aircraftCfg);
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
