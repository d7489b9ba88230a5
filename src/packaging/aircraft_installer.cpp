#include "packaging/aircraft_installer.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "aircraft/aircraft_cfg.h"
#include "aircraft/aircraft_views.h"
#include "aircraft/list_files.h"
#include "aircraft/place_mask.h"
#include "base/paths.h"
#include "core/collect_files.h"
#include "core/disk_queries.h"
#include "core/long_operation.h"
#include "core/messages.h"
#include "core/profile.h"
#include "core/stores.h"
#include "core/view.h"
#include "core/walktree.h"
#include "packaging/addon_archive.h"
#include "packaging/addon_placement.h"

namespace skv {

namespace {

std::string counted(int number, const char* what) {
  return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

// One run of the installer, from the archive to the selected row.
class AircraftInstallation {
 public:
  explicit AircraftInstallation(App& app)
      : app_(app),
        hangarDir_(app.HangarDir),
        store_{AddonType::aircraft, hangarDir_, acRoot(), app.PacksDir, "Aircraft"},
        archive_(app, store_) {}

  bool run();
  bool listStanding(const std::string& name) {
    archive_.setName(name);
    return listIfMissing();
  }

 private:
  bool place();
  void placePanel();
  bool settle();
  void finish();
  // False when it could not be listed, which the user is told.
  bool listIfMissing();
  void undo();

  int countGauges();
  // Adds the row, or brings up the one that the list has for the folder. False when it could not be
  // stored, which the user is told.
  bool addRow(const std::string& title);
  // The title that the aircraft in `folder` has, or else its folder's name.
  Result<std::string> titleOf(const std::string& folder) const;
  void status(const std::string& text) { app_.frmMain.lblStatus.caption = text; }

  std::string acRoot() const { return aircraftRootOf(hangarDir_); }
  std::string aircraftFolder() const { return acRoot() + archive_.name(); }

  App& app_;
  // The Hangar as it was when the run began: the settings, or the view, may change in a yield.
  const std::string hangarDir_;
  const AddonStore store_;
  AddonArchive archive_;
  std::optional<AddonPlacement> placement_;  // once the name is known
  std::string title_;
  int gauges_ = 0;
};

bool AircraftInstallation::run() {
  const LongOperation busy(app_);
  if (!archive_.choose()) return false;
  if (!archive_.askName()) {
    archive_.giveUp();
    if (archive_.addonStands()) listIfMissing();
    return false;
  }
  placement_.emplace(app_, store_, archive_.name());
  const bool installed = archive_.unpack() && placement_->makeFolders(sharedFolders) &&
                         archive_.unpackEmbedded() && place() && settle();
  if (installed)
    finish();
  else
    undo();
  return installed;
}

bool AircraftInstallation::place() {
  AddonPlacement& parts = *placement_;
  parts.placeShared("Looking for Gauges...", WalkFindGauge, "\\Gauges");
  parts.placeShared("Looking for Main Effects...", WalkFindEffect, "\\Effects");
  parts.placeShared("Looking for common Sounds...", WalkFindLooseWav, "\\Sound");
  status("Looking for aircraft root...");
  const std::string root = parts.find(WalkFindACCfg);
  if (root.empty()) {
    if (parts.goesOn()) app_.windows.messageBox({"No Aircraft.cfg found!"});
  } else {
    status("Moving aircraft files...");
    parts.move(root, parts.addon());
    placePanel();
    // The aircraft's own textures have left with it: what is found now belongs to the simulator's.
    parts.placeShared("Looking for Main Texures...", WalkFindTextureBmp, "\\Texture");
    gauges_ = countGauges();
  }
  if (!app_.stopRequested) tellWalk(app_, parts.report(), "moved");
  return !root.empty() && parts.goesOn();
}

// A panel that lies beside the aircraft is used when the aircraft has none of its own.
void AircraftInstallation::placePanel() {
  status("Looking for panel root...");
  AddonPlacement& parts = *placement_;
  const std::string panelHit = parts.find(WalkFindPanelCfg);
  if (panelHit.empty() || !parts.find(WalkFindPanelCfg, parts.addon()).empty()) return;
  status("Moving panel files...");
  const std::string target = parts.addon() + "\\Panel";
  if (!PathExists(app_.files(), target)) app_.files().makeFolder(target).skipped();
  parts.move(panelHit, target);
}

int AircraftInstallation::countGauges() {
  std::vector<std::string> files;
  // Only a number to be shown.
  collectFiles(app_, placement_->main() + "\\Gauges", files).skipped();
  const auto isGauge = [](const std::string& file) { return upper(file).ends_with(".GAU"); };
  return static_cast<int>(std::ranges::count_if(files, isGauge));
}

bool AircraftInstallation::settle() {
  // While all can be undone, so that a title that could not be read is read by the next try.
  const auto title = titleOf(placement_->addon());
  if (ReportError(app_, title.outcome())) return false;
  title_ = title.value();
  return placement_->settle();
}

void AircraftInstallation::finish() {
  LeftOver& leftOver = placement_->leftOver();
  archive_.finish(leftOver);
  addRow(title_);
  app_.frmMain.lblStatus.notice = title_ +
                                  " installed: " + counted(placement_->report().done, "file") +
                                  (gauges_ == 0 ? "" : ", " + counted(gauges_, "gauge"));
  archive_.tellRest(leftOver);
}

Result<std::string> AircraftInstallation::titleOf(const std::string& folder) const {
  ProfileReader reader(app_.platform.files, app_.codePage);
  const std::string file = folder + "\\Aircraft.cfg";
  std::string title = reader.read(file, "fltsim.0", "Title");
  if (const Outcome& read = reader.outcome(file); !read.ok()) return read;
  return title.empty() ? archive_.name() : title;
}

bool AircraftInstallation::addRow(const std::string& title) {
  const std::string folder = aircraftFolder() + "\\";
  if (app_.ListDir != hangarDir_) {
    // Another view came up meanwhile. Its list is not the Hangar's, whose file learns of the row.
    return !ReportError(
        app_, listInLibrary(app_, hangarDir_ + aircraftListFile, {title, folder}).outcome());
  }
  auto& list = app_.frmMain.lstAircraft;
  int row = list.findSubItem1(folder);
  if (row == 0)
    row = list.add(title, {folder});
  else
    list.setText(row, title);
  const auto id = list.id(row);
  const bool saved = SaveACList(app_);
  // The save may have shown a box, in whose time the list can change.
  row = list.rowOf(id);
  if (row == 0) return saved;
  list.select(row);
  lstAircraft_Click(app_);
  row = list.rowOf(id);
  if (row == 0) return saved;
  list.ensureVisible(row);
  list.setSmallIcon(row, placeIcon(inHangar));
  return saved;
}

// A run that ended between the aircraft's name and its row left an aircraft that no other run could
// install again. It is whole: only the row is missing, or it is on screen and could not be saved.
bool AircraftInstallation::listIfMissing() {
  if (archive_.name().empty()) return true;
  const auto found = app_.files().attributes(aircraftFolder() + "\\Aircraft.cfg");
  if (!found.ok())
    return presenceBy(found.outcome()) == Presence::absent || !ReportError(app_, found.outcome());
  const std::string folder = aircraftFolder() + "\\";
  const bool onScreen = app_.ListDir == hangarDir_;
  if (onScreen && app_.frmMain.lstAircraft.findSubItem1(folder) != 0) {
    const auto rows = parseLibraryRows(app_.aircraftSource.bytes.value_or(""), app_.codePage);
    return std::ranges::any_of(rows,
                               [&folder](const LibraryRow& row) {
                                 return equalsIgnoringCase(withBackslash(row.Folder), folder);
                               }) ||
           SaveACList(app_);
  }
  const auto title = titleOf(aircraftFolder());
  if (ReportError(app_, title.outcome())) return false;
  if (!onScreen) {
    const auto added = listInLibrary(app_, hangarDir_ + aircraftListFile, {title.value(), folder});
    if (ReportError(app_, added.outcome()) || !added.value()) return added.ok();
  } else if (!addRow(title.value())) {
    return false;
  }
  app_.frmMain.lblStatus.notice =
      title.value() + " was in the Hangar already. Now the list has it, too.";
  return true;
}

// Nothing of the run remains.
void AircraftInstallation::undo() {
  placement_->undo(archive_.stillThere());
  archive_.giveUp();
  if (app_.stopRequested)
    app_.frmMain.lblStatus.notice = "Installation stopped: nothing was added to the Hangar";
}

}  // namespace

bool listInstalledAC(App& app, const std::string& name) {
  return AircraftInstallation(app).listStanding(name);
}

bool mnuFileInstallAC_Click(App& app) {
  // The settings may have named another Hangar since the view was opened.
  if (inFSView(app) || app.ListDir != app.HangarDir) {
    mnuViewHangar_Click(app);
    app.windows.yield();
  }
  return AircraftInstallation(app).run();
}

}  // namespace skv
