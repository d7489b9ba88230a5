#include "aircraft/alias_tabs.h"

#include "aircraft/aircraft_cfg.h"
#include "aircraft/original_cfg.h"
#include "base/paths.h"
#include "core/disk_queries.h"

namespace skv {

namespace {

constexpr ui::Colour aliasColour = 65280;

// What tells the panel side from the sound side.
struct AddonKind {
  const char* part;    // folder name and section key
  const char* file;    // configuration file
  const char* backup;  // the real one, moved aside by an assignment
  ui::ListView ui::FrmMain::*list;
  ui::TextBox ui::FrmMain::*box;  // the variation's value
  ui::Label ui::FrmMain::*status;
  ui::Button ui::FrmMain::*restore;
};

constexpr AddonKind panel{"panel",
                          "panel.cfg",
                          "panel.preSKV.cfg",
                          &ui::FrmMain::lstPanel,
                          &ui::FrmMain::txtPanel,
                          &ui::FrmMain::lblPNStatus,
                          &ui::FrmMain::btnPNRestoreOriginal};
constexpr AddonKind sound{"sound",
                          "sound.cfg",
                          "sound.preSKV.cfg",
                          &ui::FrmMain::lstSound,
                          &ui::FrmMain::txtSound,
                          &ui::FrmMain::lblSNStatus,
                          &ui::FrmMain::btnSNRestoreOriginal};

// Shows the alias of the configuration file in `folder`, and answers it.
std::string showStatus(App& app, ProfileReader& reader, const std::string& folder,
                       const AddonKind& kind) {
  auto& label = app.frmMain.*kind.status;
  std::string alias = reader.read(folder + kind.file, "fltsim", "alias");
  const Outcome& read = reader.outcome(folder + kind.file);
  if (!read.ok() && presenceBy(read) == Presence::unknown)
    label.caption = std::string(kind.file) + " could not be read: " + read.description();
  else
    label.caption = alias.empty() ? "Original" : "Alias: " + alias;
  label.colour = alias.empty() ? ui::defaultColour : aliasColour;
  return alias;
}

// The folder whose configuration file is in force for the selected variation.
std::string folderInForce(App& app, const std::string& folder, const AddonKind& kind) {
  if (PathExists(app.files(), folder + kind.file)) return folder;
  return folder + partFolder(kind.part, (app.frmMain.*kind.box).text);
}

// Answers the folder that the variation really uses, "" without an aircraft.
std::string fillTab(App& app, ProfileReader& reader, const AddonKind& kind) {
  auto& restore = app.frmMain.*kind.restore;
  const std::string folder = selectedAircraftFolder(app);
  if (folder.empty()) {
    (app.frmMain.*kind.status).caption = "";
    restore.enabled = false;
    return {};
  }
  const std::string inForce = folderInForce(app, folder, kind);
  const std::string alias = showStatus(app, reader, inForce, kind);
  std::string used = withBackslash(alias.empty() ? inForce : app.ACRoot + alias);

  auto& list = app.frmMain.*kind.list;
  list.select(list.findSubItem1(used));
  if (list.selected() != 0) list.ensureVisible(list.selected());
  restore.enabled = PathExists(app.files(), inForce + kind.backup);
  return used;
}

void showLibraryRow(App& app, const AddonKind& kind) {
  const auto& list = app.frmMain.*kind.list;
  if (list.selected() == 0) return;
  std::string folder = list.subItem(list.selected(), 1);
  if (!PathExists(app.files(), folder + kind.file)) folder += partFolder(kind.part, "");
  ProfileReader reader(app.files(), app.codePage);
  showStatus(app, reader, folder, kind);
}

}  // namespace

void FillPanelTab(App& app, ProfileReader& reader) {
  app.PanelPicDir = fillTab(app, reader, panel);
  const std::string folder = selectedAircraftFolder(app);
  app.frmMain.btnACRestoreOriginal.enabled =
      !folder.empty() && PathExists(app.files(), folder + originalAircraftCfg);
}

void FillSoundTab(App& app, ProfileReader& reader) { fillTab(app, reader, sound); }

void lstPanel_Click(App& app) { showLibraryRow(app, panel); }
void lstSound_Click(App& app) { showLibraryRow(app, sound); }

}  // namespace skv
