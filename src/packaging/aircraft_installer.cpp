#include "packaging/aircraft_installer.h"

#include "aircraft/aircraft_cfg.h"
#include "aircraft/aircraft_views.h"
#include "aircraft/list_files.h"
#include "aircraft/place_mask.h"
#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/long_operation.h"
#include "core/messages.h"
#include "core/profile.h"
#include "core/settings_keys.h"
#include "core/stores.h"
#include "core/view.h"
#include "core/walktree.h"
#include "core/working_folder.h"
#include "core/zip_service.h"

namespace skv {

namespace {

constexpr int yieldsAfterChoice = 1000;
constexpr int yieldsAfterExtraction = 500;
constexpr int triesToDelete = 5;
constexpr int yieldsBetweenTries = 100;

// One run of the installer, from the archive to the selected row.
class Installation {
 public:
  explicit Installation(App& app)
      : app_(app), runFolder_(decimal(app.platform.clock.now()) + "\\") {}

  void run();

 private:
  bool chooseArchive();
  bool nameAircraft();
  bool unpack();
  bool makeAircraftFolder();
  bool unpackEmbedded();
  bool unpackOneEmbedded(const std::string& folder, const std::string& name);
  bool deleteEmbedded(const std::string& path);

  void place();
  void placeShared(const char* status, WalkCode finder, const char* folder);
  bool placeAircraft();
  void placePanel();
  void finish();
  void undo();

  bool find(WalkCode finder, const std::string& where);
  void removeTree(const std::string& folder);
  void status(const std::string& text) { app_.frmMain.lblStatus.caption = text; }
  // The end after an error box.
  bool failed() {
    status("");
    return false;
  }

  std::string aircraftFolder() const { return acRoot_ + addonName_; }
  std::string mainFolder() const { return mainRootOf(hangarDir_) + addonName_; }

  App& app_;
  // The Hangar as it was when the run began: the settings, or the view, may change in a yield.
  std::string hangarDir_, acRoot_;
  const std::string runFolder_;  // below InstallTempDir, unique to the run, with trailing backslash
  std::string zipPath_;
  std::string addonName_;  // folder of the new aircraft, as the user confirmed it
};

void Installation::run() {
  // The settings may have named another Hangar since the view was opened.
  if (inFSView(app_) || app_.ListDir != app_.HangarDir) {
    mnuViewHangar_Click(app_);
    app_.windows.yield();
  }
  hangarDir_ = app_.HangarDir;
  acRoot_ = aircraftRootOf(hangarDir_);
  const LongOperation busy(app_);
  app_.error.clear();
  if (!chooseArchive() || !nameAircraft()) return;
  if (!unpack() || !makeAircraftFolder() || !unpackEmbedded()) return;
  place();
  app_.error.clear();
}

bool Installation::chooseArchive() {
  if (!app_.PendingZIP.empty()) {
    zipPath_ = std::exchange(app_.PendingZIP, {});
  } else {
    auto picked = app_.windows.openFile({app_.LastZIPDir, "Zip Files|*.zip"});
    if (!picked.ok()) {
      if (picked.outcome().number() != err::cancelled) {
        app_.step(picked.outcome());
        ReportError(app_);
      }
      return false;
    }
    app_.LastZIPDir = picked.value().initialFolder;
    writeSetting(app_, setting::LastZIPDir, app_.LastZIPDir).skipped();
    zipPath_ = std::move(picked).value().path;
  }
  ui::yieldTimes(app_.windows, yieldsAfterChoice);
  status("Extracting ZIP: " + zipPath_);
  return true;
}

bool Installation::nameAircraft() {
  constexpr std::size_t extension = 4;  // ".zip"
  const std::string file = fileName(zipPath_);
  const auto name =
      app_.windows.inputBox("Foldername for aircraft:", ui::programTitle,
                            file.substr(0, file.size() - std::min(file.size(), extension)));
  if (!name) return failed();
  addonName_ = *name;
  // An empty name is the aircraft root itself, whether that stands or not.
  if (!addonName_.empty() && !PathExists(app_.files(), acRoot_ + addonName_ + "\\")) return true;
  app_.windows.messageBox(
      {"Aircraft '" + addonName_ + "' already exists!", ui::BoxIcon::exclamation});
  return false;
}

bool Installation::unpack() {
  ReadAndExtract job(app_);
  if (!job.open(zipPath_)) return failed();
  FileSystem& files = app_.files();
  if (!PathExists(files, app_.InstallTempDir)) {
    app_.step(files.makeFolder(app_.InstallTempDir));
    if (ReportError(app_)) return failed();
  }
  clearWorkingFolders(app_);
  status("Extracting ZIP: " + zipPath_);
  app_.step(files.makeFolder(app_.InstallTempDir + runFolder_));
  if (ReportError(app_)) return failed();
  return job.fits(hangarDir_) &&
         (job.extract(app_.InstallTempDir + runFolder_, yieldsAfterExtraction) || failed());
}

bool Installation::makeAircraftFolder() {
  // The name must be one folder: a path would put the aircraft, and its removal, somewhere else.
  if (!isElementName(addonName_))
    app_.step(Outcome::failure(err::badFileName, addonName_));
  else if (!PathExists(app_.files(), aircraftFolder()))
    app_.step(app_.files().makeFolder(aircraftFolder()));
  return !ReportError(app_) || failed();
}

// A ZIP inside the ZIP is unpacked beside the run's folder. The search looks into that folder only,
// so a ZIP inside such a ZIP stays as it is. Ends since each round deletes what it found or gives
// up.
bool Installation::unpackEmbedded() {
  while (find(WalkFindZip, app_.InstallTempDir + runFolder_)) {
    const std::string folder = std::exchange(app_.FoundDir, {});
    const auto listing = app_.files().list(folder);
    app_.step(listing.outcome());
    if (ReportError(app_)) return failed();
    for (const FolderEntry& entry : listing.value()) {
      if (entry.folder || !upper(entry.name).ends_with(".ZIP")) continue;
      if (!unpackOneEmbedded(folder, entry.name)) return false;
    }
  }
  return true;
}

bool Installation::unpackOneEmbedded(const std::string& folder, const std::string& name) {
  FileSystem& files = app_.files();
  const std::string path = folder + name;
  const std::string text = "Extracting embedded ZIP: " + name;
  status(text);
  const auto length = files.fileLength(path);
  app_.step(length.outcome());
  if (length.ok() && length.value() == 0)
    app_.step(Outcome::withText(err::zip, "The embedded ZIP \"" + path + "\" is empty."));
  if (ReportError(app_)) return failed();

  const std::string target = app_.InstallTempDir + "_" + runFolder_ + "SKV" + name;
  MakePath(files, target);
  if (!folderExists(files, target)) app_.step(Outcome::failure(err::pathNotFound, target));
  if (ReportError(app_)) return failed();

  {
    ReadAndExtract job(app_);
    if (!job.open(path)) return failed();
    if (!job.fits(hangarDir_)) return false;
    if (!job.extract(target, yieldsAfterExtraction)) return failed();
  }
  return deleteEmbedded(path) || failed();
}

bool Installation::deleteEmbedded(const std::string& path) {
  for (int attempt = 0; attempt < triesToDelete; ++attempt) {
    app_.error.clear();
    if (app_.step(app_.files().deleteFile(path))) return true;
    app_.files().setAttributes(path, {}).skipped();
    ui::yieldTimes(app_.windows, yieldsBetweenTries);
  }
  return !ReportError(app_);
}

// The searches see the ZIP's contents and those of all embedded ZIPs as one tree.
void Installation::place() {
  FileSystem& files = app_.files();
  files.makeFolder(mainFolder()).skipped();
  for (const char* folder : {"\\Gauges", "\\Sound", "\\Texture", "\\Effects"})
    files.makeFolder(mainFolder() + folder).skipped();

  placeShared("Looking for Gauges...", WalkFindGauge, "\\Gauges");
  placeShared("Looking for Main Effects...", WalkFindEffect, "\\Effects");
  placeShared("Looking for common Sounds...", WalkFindLooseWav, "\\Sound");
  if (!placeAircraft()) {
    undo();
    return;
  }
  placePanel();
  // The aircraft's own textures have left with it: what is found now belongs to the simulator's.
  placeShared("Looking for Main Texures...", WalkFindTextureBmp, "\\Texture");
  status("Cleaning temporary folder...");
  emptyWorkingFolder(app_);
  finish();
}

// Moves the first folder that the finder hits, with all that is in it, into the add-on's main
// folder.
void Installation::placeShared(const char* text, WalkCode finder, const char* folder) {
  status(text);
  if (!find(finder, app_.InstallTempDir)) return;
  const std::string found = std::exchange(app_.FoundDir, {});
  WalkTree(app_, found, mainFolder() + folder, WalkMove, true);
  app_.files().removeFolder(found).skipped();
  app_.error.clear();
}

bool Installation::placeAircraft() {
  status("Looking for aircraft root...");
  if (!find(WalkFindACCfg, app_.InstallTempDir)) return false;
  status("Moving aircraft files...");
  WalkTree(app_, std::exchange(app_.FoundDir, {}), aircraftFolder(), WalkMove, true);
  return true;
}

// A panel that lies beside the aircraft is used when the aircraft has none of its own.
void Installation::placePanel() {
  status("Looking for panel root...");
  if (!find(WalkFindPanelCfg, app_.InstallTempDir)) return;
  const std::string panelHit = std::exchange(app_.FoundDir, {});
  if (!find(WalkFindPanelCfg, aircraftFolder())) {
    status("Moving panel files...");
    const std::string target = aircraftFolder() + "\\Panel";
    if (!PathExists(app_.files(), target)) app_.files().makeFolder(target).skipped();
    WalkTree(app_, panelHit, target, WalkMove, true);
  }
  app_.FoundDir.clear();
}

void Installation::finish() {
  std::string title =
      ReadProfile(app_.files(), app_.codePage,
                  hangarDir_ + "Aircraft\\" + addonName_ + "\\Aircraft.cfg", "fltsim.0", "Title");
  if (title.empty()) title = addonName_;
  status("");
  if (app_.ListDir != hangarDir_) {
    // Another view came up meanwhile. Its list is not the Hangar's, whose file learns of the row.
    app_.step(
        appendLibraryRow(app_, hangarDir_ + aircraftListFile, {title, aircraftFolder() + "\\"}));
    ReportError(app_);
    return;
  }
  auto& list = app_.frmMain.lstAircraft;
  const int row = list.add(title, {aircraftFolder() + "\\"});
  const auto id = list.id(row);
  SaveACList(app_);
  // The save may have shown a box, in whose time the list can change.
  const int added = list.rowOf(id);
  if (added == 0) return;
  list.select(added);
  lstAircraft_Click(app_);
  list.ensureVisible(added);
  list.setSmallIcon(added, placeIcon(inHangar));
}

// Nothing of a run without an aircraft remains.
void Installation::undo() {
  app_.windows.messageBox({"No Aircraft.cfg found!"});
  status("Cleaning temporary folder...");
  emptyWorkingFolder(app_);
  removeTree(mainFolder());
  removeTree(aircraftFolder());
  status("");
}

void Installation::removeTree(const std::string& folder) {
  WalkTree(app_, folder, "", WalkDelete, true);
  app_.files().removeFolder(folder).skipped();
}

bool Installation::find(WalkCode finder, const std::string& where) {
  app_.FoundDir.clear();
  WalkTree(app_, where, "", finder, true);
  return !app_.FoundDir.empty();
}

}  // namespace

void mnuFileInstallAC_Click(App& app) { Installation(app).run(); }

}  // namespace skv
