#include "aircraft/hangar_transfer.h"

#include <algorithm>

#include "aircraft/list_files.h"
#include "aircraft/place_mask.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/disk_queries.h"
#include "core/folder_guard.h"
#include "core/landing_folder.h"
#include "core/long_operation.h"
#include "core/messages.h"
#include "core/shared_folders.h"
#include "core/stores.h"
#include "core/view.h"
#include "core/walktree.h"
#include "core/working_folder.h"
#include "core/zip_service.h"

namespace skv {

namespace {

constexpr int yieldsAfterExtraction = 2000;

// One run. What it needs to know it takes at its begin: the row itself may move or go while the
// transfer yields, and the settings may name other folders.
class HangarTransfer {
 public:
  HangarTransfer(App& app, int row)
      : app_(app),
        files_(app.files()),
        FSRoot_(app.FSRoot),
        HangarDir_(app.HangarDir),
        package_(app.PacksDir + FolderName(app.frmMain.lstAircraft.subItem(row, 1)) + packageEnd),
        row_(app.frmMain.lstAircraft.id(row)),
        Name_(app.frmMain.lstAircraft.text(row)),
        Folder_(app.frmMain.lstAircraft.subItem(row, 1)),
        FolderName_(FolderName(Folder_)),
        Mask_(rowMask(app, row)),
        toHangar_(inFSView(app)) {}

  void run() {
    // Without a name of its own the aircraft would be spread over the whole store.
    if (!isElementName(FolderName_)) return;
    if (toHangar_)
      toHangar();
    else if ((Mask_ & inPackage) != 0)
      packageToSimulator();
    else
      hangarToSimulator();
  }

 private:
  void toHangar() {
    if (!sourceMayBeCopied()) return;
    const std::string main = mainRootOf(HangarDir_) + FolderName_;
    for (const std::string& folder : {HangarDir_, HangarDir_ + "Aircraft", HangarDir_ + "Main"})
      if (!ensureFolder(folder)) return;
    LandingFolder aircraft(app_, HangarDir_ + "Aircraft\\", FolderName_);
    if (!succeeds(aircraft.open())) return;
    copyAircraft(Folder_, aircraft);
    if (!allCopied()) return;
    if (!ensureFolder(main)) return;
    for (const char* shared : sharedFolders)
      if (!ensureFolder(main + "\\" + shared)) return;
    arrive(aircraft, HangarDir_, inHangar);
  }

  void hangarToSimulator() {
    if (!sourceMayBeCopied()) return;
    LandingFolder aircraft(app_, aircraftRootOf(FSRoot_), FolderName_);
    if (succeeds(aircraft.open()))
      toSimulator(aircraft, Folder_, mainRootOf(HangarDir_) + FolderName_ + "\\");
  }

  // A Package goes before a folder in the Hangar: compressing has thinned that one out.
  void packageToSimulator() {
    LandingFolder aircraft(app_, aircraftRootOf(FSRoot_), FolderName_);
    if (!succeeds(aircraft.open()) || !succeeds(clearWorkingFolders(app_))) return;
    if (unpack())
      toSimulator(aircraft, app_.InstallTempDir + "Aircraft\\", app_.InstallTempDir + "Main\\");
    emptyWorkingFolder(app_);
  }

  bool unpack() {
    app_.frmMain.lblStatus.caption = "Prepairing files...";
    ReadAndExtract job(app_);
    if (!job.open(package_) || !job.fits(FSRoot_)) return false;
    app_.frmMain.lblStatus.caption = "Unzipping: " + fileName(package_);
    if (!job.extract(app_.InstallTempDir, yieldsAfterExtraction)) return false;
    const std::string aircraft = app_.InstallTempDir + "Aircraft\\";
    const auto there = files_.attributes(aircraft);
    if (there.ok() && there.value().folder) return true;
    return succeeds(Outcome::withText(
        err::zip, "The Package \"" + package_ + "\" holds no folder \"Aircraft\"."));
  }

  // Merges an aircraft folder and a main folder into the simulator.
  void toSimulator(LandingFolder& aircraft, const std::string& folder, const std::string& main) {
    copyAircraft(folder, aircraft);
    for (const char* shared : sharedFolders)
      if (report_.complete())
        report_ += fillSharedFolder(app_, main + shared, FSRoot_ + shared, false);
    if (report_.complete()) report_.note(files_.flushDisk(FSRoot_), FSRoot_);
    if (allCopied()) arrive(aircraft, FSRoot_, inSimulator);
  }

  // A row may lead anywhere. One whose folder has vanished is carried as an empty folder, but not
  // one of which the disk does not tell.
  bool sourceMayBeCopied() {
    if (!succeeds(mayBeCopied(app_, Folder_))) return false;
    const auto there = files_.attributes(Folder_);
    return there.ok() || presenceBy(there.outcome()) == Presence::absent ||
           succeeds(there.outcome());
  }

  void copyAircraft(const std::string& folder, const LandingFolder& aircraft) {
    const std::string source = files_.identity(folder);
    // A row of one view may lead to the other's folder: all is there already.
    if (source.empty() || source != files_.identity(aircraft.path()))
      report_ += WalkTree(app_, folder, aircraft.path(), WalkCopy, false);
  }

  bool allCopied() { return tellWalk(app_, report_, "copied"); }

  // Makes one level when it is missing.
  bool ensureFolder(const std::string& folder) {
    const Presence presence = presenceOf(files_, folder);
    if (presence == Presence::there) return true;
    return succeeds(presence == Presence::absent ? files_.makeFolder(folder)
                                                 : files_.attributes(folder).outcome());
  }

  // All is copied: what says so comes last.
  void arrive(LandingFolder& aircraft, const std::string& root, PlaceBit place) {
    if (!succeeds(aircraft.settle()) || !succeeds(listIn(root))) return;
    auto& list = app_.frmMain.lstAircraft;
    if (const int row = list.rowOf(row_); row != 0)
      list.setSmallIcon(row, placeIcon(Mask_ | place));
    std::string told = Name_ + " copied to " + target() + ": " + std::to_string(report_.done) +
                       (report_.done == 1 ? " file" : " files");
    if (report_.left > 0)
      told += ", " + std::to_string(report_.left) + " left out: another has the same name";
    app_.frmMain.lblStatus.notice = told;
  }

  // The other view learns of the aircraft by a line in its list.
  Outcome listIn(const std::string& root) {
    return listInLibrary(app_, root + aircraftListFile,
                         {Name_, aircraftRootOf(root) + FolderName_ + "\\"})
        .outcome();
  }

  // Tells of a step that failed, and ends the transfer.
  bool succeeds(const Outcome& step) {
    if (!step.ok()) tellFailure(app_, Name_ + " was not copied to " + target() + ".", step);
    return step.ok();
  }
  const char* target() const { return toHangar_ ? "the Hangar" : "the simulator"; }

  App& app_;
  FileSystem& files_;
  const std::string FSRoot_, HangarDir_, package_;
  const ui::ListView::RowId row_;
  const std::string Name_, Folder_, FolderName_;
  const int Mask_;
  const bool toHangar_;
  WalkReport report_;
};

}  // namespace

void btnHangar_Click(App& app) {
  const int row = app.frmMain.lstAircraft.selected();
  if (row == 0) return;
  const LongOperation busy(app);
  HangarTransfer(app, row).run();
  app.frmMain.lblStatus.caption = "";
}

}  // namespace skv
