#include "aircraft/alias_tabs.h"

#include "aircraft/aircraft_cfg.h"
#include "base/paths.h"
#include "core/disk_queries.h"
#include "pictures/shown_pictures.h"

namespace skv {

namespace {

constexpr ui::Colour aliasColour = 65280;   // green
constexpr ui::Colour originalColour = 255;  // red

// Shows the alias of the configuration file in `folder`, and answers it.
std::string showStatus(App& app, ProfileReader& reader, const std::string& folder,
                       const AddonKind& kind) {
  auto& label = app.frmMain.*kind.status;
  std::string alias = reader.read(folder + kind.file, "fltsim", "alias");
  const Outcome& read = reader.outcome(folder + kind.file);
  if (!read.ok() && presenceBy(read) == Presence::unknown) {
    label.caption = std::string(kind.file) + " could not be read: " + read.description();
    label.colour = ui::defaultColour;
  } else {
    label.caption = alias.empty() ? "Original" : "Alias: " + alias;
    label.colour = alias.empty() ? originalColour : aliasColour;
  }
  return alias;
}

// The folder whose configuration file is in force for the selected variation.
std::string folderInForce(App& app, const std::string& folder, const AddonKind& kind) {
  if (PathExists(app.files(), folder + kind.file)) return folder;
  return folder + partFolder(kind.part, variationValue(app, kind.part));
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
  // The variation's own folder is where an alias is written, and where it is undone.
  const std::string own = folder + partFolder(kind.part, variationValue(app, kind.part));
  restore.enabled = PathExists(app.files(), own + kind.backup);
  return used;
}

// Answers the folder of the library row's panel or sound, "" without a row.
std::string showLibraryRow(App& app, const AddonKind& kind) {
  showAliasCommands(app);
  const auto& list = app.frmMain.*kind.list;
  if (list.selected() == 0) return {};
  std::string folder = list.subItem(list.selected(), 1);
  if (!PathExists(app.files(), folder + kind.file)) folder += partFolder(kind.part, "");
  ProfileReader reader(app.files(), app.codePage);
  showStatus(app, reader, folder, kind);
  return folder;
}

// The folder of the variation's textures, "" without a variation. Its value is a name of one
// folder: what leads elsewhere is none.
std::string textureFolder(App& app) {
  if (app.infoSource.values.empty()) return {};
  const std::string name = partFolder("texture", variationValue(app, "texture"));
  return isElementName(withoutBackslash(name)) ? app.infoSource.folder + name : std::string();
}

}  // namespace

void FillPanelTab(App& app, ProfileReader& reader) {
  app.TexDir = textureFolder(app);
  showAircraftPicture(app);
  app.PanelPicDir = fillTab(app, reader, panelKind);
  showPanelPicture(app);
  const std::string folder = selectedAircraftFolder(app);
  app.frmMain.btnACRestoreOriginal.enabled =
      !folder.empty() && PathExists(app.files(), folder + originalAircraftCfg);
}

void FillSoundTab(App& app, ProfileReader& reader) {
  fillTab(app, reader, soundKind);
  showAliasCommands(app);
}

void showAliasState(App& app, const AddonKind& kind) {
  ProfileReader reader(app.files(), app.codePage);
  if (&kind == &panelKind)
    FillPanelTab(app, reader);
  else
    FillSoundTab(app, reader);
  showAliasCommands(app);
}

void showAliasCommands(App& app) {
  for (const AddonKind* kind : {&panelKind, &soundKind}) {
    const bool selected = (app.frmMain.*kind->list).selected() != 0;
    (app.frmMain.*kind->remove).enabled = selected;
    (app.frmMain.*kind->assign).enabled = selected && !app.infoSource.values.empty();
  }
}

void lstPanel_Click(App& app) {
  const std::string folder = showLibraryRow(app, panelKind);
  if (folder.empty()) return;
  app.PanelPicDir = folder;
  showLibraryPanelPicture(app);
}

void lstSound_Click(App& app) { showLibraryRow(app, soundKind); }

}  // namespace skv
