#include "aircraft/hangar_transfer.h"

#include <algorithm>
#include <unordered_set>

#include "aircraft/alias_users.h"
#include "aircraft/list_files.h"
#include "aircraft/place_mask.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/disk_queries.h"
#include "core/folder_guard.h"
#include "core/landing_folder.h"
#include "core/long_operation.h"
#include "core/messages.h"
#include "core/profile.h"
#include "core/shared_folders.h"
#include "core/stores.h"
#include "core/view.h"
#include "core/walktree.h"
#include "core/working_folder.h"
#include "core/zip_service.h"

namespace skv {

namespace {

constexpr int yieldsAfterExtraction = 2000;

// What a run needs to know of an aircraft, taken at its begin: the row itself may move or go while
// the transfer yields.
struct Carried {
  ui::ListView::RowId row = 0;  // 0 for one that is not listed
  std::string Name, Folder;
  int Mask = 0;
};

Carried carriedRow(App& app, int row) {
  const auto& list = app.frmMain.lstAircraft;
  return {list.id(row), list.text(row), list.subItem(row, 1), rowMask(app, row)};
}

// The Hangar's aircraft of that folder name.
Carried carriedFromHangar(App& app, const std::string& name) {
  const std::string folder = aircraftRootOf(app.HangarDir) + name + "\\";
  if (const int row = app.frmMain.lstAircraft.findSubItem1(folder); row != 0)
    return carriedRow(app, row);
  return {0, name, folder, PlaceMask(app, name)};
}

// One run. The settings may name other folders meanwhile.
class HangarTransfer {
 public:
  HangarTransfer(App& app, const Carried& aircraft)
      : app_(app),
        files_(app.files()),
        FSRoot_(app.FSRoot),
        HangarDir_(app.HangarDir),
        package_(app.PacksDir + FolderName(aircraft.Folder) + packageEnd),
        row_(aircraft.row),
        Name_(aircraft.Name),
        Folder_(aircraft.Folder),
        FolderName_(FolderName(Folder_)),
        Mask_(aircraft.Mask),
        toHangar_(inFSView(app)) {}

  // Names of the aircraft that the user wants to have carried as well.
  const std::vector<std::string>& wantedToo() const { return wantedToo_; }

  // What to tell of an aircraft that has arrived.
  const std::string& told() const { return told_; }

  // Answers whether the aircraft has arrived.
  bool run() {
    // Without a name of its own the aircraft would be spread over the whole store.
    if (!isElementName(FolderName_)) return false;
    if (toHangar_) return toHangar();
    if ((Mask_ & inPackage) == 0) return hangarToSimulator();
    switch (packageIsMeant()) {
      case ui::Answer::yes:
        return packageToSimulator();
      case ui::Answer::no:
        return hangarToSimulator();
      default:
        return false;
    }
  }

 private:
  bool toHangar() {
    if (!sourceMayBeCopied()) return false;
    const std::string main = mainRootOf(HangarDir_) + FolderName_;
    for (const std::string& folder : {HangarDir_, HangarDir_ + "Aircraft", HangarDir_ + "Main"})
      if (!ensureFolder(folder)) return false;
    LandingFolder aircraft(app_, HangarDir_ + "Aircraft\\", FolderName_);
    if (!succeeds(aircraft.open())) return false;
    copyAircraft(Folder_, aircraft);
    if (!allCopied() || !ensureFolder(main)) return false;
    for (const char* shared : sharedFolders)
      if (!ensureFolder(main + "\\" + shared)) return false;
    return arrive(aircraft, HangarDir_, inHangar);
  }

  // A Package has the name of its aircraft's folder, and says no more about where that lies.
  ui::Answer packageIsMeant() {
    const std::string other = namesakeInHangar(app_, Folder_);
    if (other.empty()) return ui::Answer::yes;
    return app_.windows.messageBox(
        {.text = "\"" + Name_ + "\" lies in\r\n" + Folder_ +
                 "\r\nAnother aircraft has a folder of the same name:\r\n" + other +
                 "\r\n\r\nIs \"" + fileName(package_) +
                 "\" the Package of the first of them? No copies its folder as it is.",
         .icon = ui::BoxIcon::question,
         .buttons = ui::BoxButtons::yesNoCancel,
         .defaultButton = ui::DefaultButton::no});
  }

  bool hangarToSimulator() {
    if (!sourceMayBeCopied() || !isWholeOrWanted()) return false;
    LandingFolder aircraft(app_, aircraftRootOf(FSRoot_), FolderName_);
    return succeeds(aircraft.open()) &&
           toSimulator(aircraft, Folder_, mainRootOf(HangarDir_) + FolderName_ + "\\");
  }

  // A Package goes before a folder in the Hangar: compressing has thinned that one out.
  bool packageToSimulator() {
    LandingFolder aircraft(app_, aircraftRootOf(FSRoot_), FolderName_);
    if (!succeeds(aircraft.open()) || !succeeds(clearWorkingFolders(app_))) return false;
    const bool arrived = unpack() && toSimulator(aircraft, app_.InstallTempDir + "Aircraft\\",
                                                 app_.InstallTempDir + "Main\\");
    emptyWorkingFolder(app_);
    return arrived;
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
  bool toSimulator(LandingFolder& aircraft, const std::string& folder, const std::string& main) {
    if (!aliasesAreAgreed(folder)) return false;
    copyAircraft(folder, aircraft);
    for (const char* shared : sharedFolders)
      if (report_.complete())
        report_ += fillSharedFolder(app_, main + shared, FSRoot_ + shared, false);
    if (report_.complete()) report_.note(files_.flushDisk(FSRoot_), FSRoot_);
    return allCopied() && arrive(aircraft, FSRoot_, inSimulator);
  }

  // A row may lead anywhere. One whose folder has vanished is carried as an empty folder, but not
  // one of which the disk does not tell.
  bool sourceMayBeCopied() {
    if (!succeeds(mayBeCopied(app_, Folder_))) return false;
    const auto there = files_.attributes(Folder_);
    return there.ok() || presenceBy(there.outcome()) == Presence::absent ||
           succeeds(there.outcome());
  }

  // Compressing takes the flight model out of a folder, which nobody sees when the Package is gone.
  bool isWholeOrWanted() {
    const std::string folder = withBackslash(Folder_), cfg = folder + "aircraft.cfg";
    const std::string model = ReadProfile(files_, app_.codePage, cfg, "fltsim.0", "sim");
    if (!isElementName(model)) return true;
    const std::string file = model + ".air";
    return presenceOf(files_, folder + file) != Presence::absent ||
           app_.windows.messageBox(
               {.text = "\"" + Name_ + "\" is not whole: its aircraft.cfg names \"" + file +
                        "\", which is not in\r\n" + folder +
                        "\r\nIt may have been compressed, and its Package is gone.\r\n\r\nCopy "
                        "what is there all the same?",
                .icon = ui::BoxIcon::warning,
                .buttons = ui::BoxButtons::yesNo,
                .defaultButton = ui::DefaultButton::no}) == ui::Answer::yes;
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

  // Asks about each aircraft whose panel or sound this one uses, and that the simulator lacks.
  bool aliasesAreAgreed(const std::string& folder) {
    std::unordered_set<std::string> asked{upper(FolderName_)};
    const auto aliases = aliasesOf(app_, withBackslash(folder));
    if (!succeeds(aliases.outcome())) return false;
    for (const Alias& alias : aliases.value()) {
      const std::string name = split(alias.target, '\\')[0];
      if (!isElementName(name) || !asked.insert(upper(name)).second) continue;
      const auto there = files_.attributes(aircraftRootOf(FSRoot_) + name);
      if (there.ok()) continue;
      if (presenceBy(there.outcome()) == Presence::unknown) return succeeds(there.outcome());
      const auto mayStand = [&](const std::string& path) {
        return presenceOf(files_, path) != Presence::absent;
      };
      const bool stands = mayStand(app_.PacksDir + name + packageEnd) ||
                          mayStand(aircraftRootOf(HangarDir_) + name + "\\aircraft.cfg");
      const std::string lacks = "\"" + Name_ + "\" uses the " + alias.kind->part + " of \"" + name +
                                "\", which the simulator does not have.";
      const char* const elsewhere =
          equalsIgnoringCase(name, FolderName(withBackslash(app_.PanelsDir)))
              ? " \"Synchronize Panels Folder\" brings it."
              : " Nor does the Hangar.";
      const ui::Answer answer = app_.windows.messageBox(
          stands ? ui::Box{lacks + "\r\rCopy that one to the simulator as well?",
                           ui::BoxIcon::question, ui::BoxButtons::yesNoCancel}
                 : ui::Box{lacks + elsewhere + "\r\rCopy \"" + Name_ + "\" without it?",
                           ui::BoxIcon::question, ui::BoxButtons::yesNo});
      if (answer == ui::Answer::cancel || (!stands && answer == ui::Answer::no)) return false;
      if (stands && answer == ui::Answer::yes) wantedToo_.push_back(name);
    }
    return true;
  }

  // All is copied: what says so comes last.
  bool arrive(LandingFolder& aircraft, const std::string& root, PlaceBit place) {
    if (!succeeds(aircraft.settle()) || !succeeds(listIn(root))) return false;
    auto& list = app_.frmMain.lstAircraft;
    if (const int row = list.rowOf(row_); row != 0)
      list.setSmallIcon(row, placeIcon(Mask_ | place));
    told_ = Name_ + " copied to " + target() + ": " + std::to_string(report_.done) +
            (report_.done == 1 ? " file" : " files");
    if (report_.left > 0)
      told_ += ", " + std::to_string(report_.left) + " left out: another has the same name";
    return true;
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
  std::vector<std::string> wantedToo_;
  std::string told_;
  WalkReport report_;
};

}  // namespace

void btnHangar_Click(App& app) {
  const int row = app.frmMain.lstAircraft.selected();
  if (row == 0) return;
  const LongOperation busy(app);
  std::vector<Carried> aircraft{carriedRow(app, row)};
  std::string told;
  for (std::size_t i = 0; i < aircraft.size(); ++i) {
    HangarTransfer transfer(app, aircraft[i]);
    if (!transfer.run()) break;
    told += (told.empty() ? "" : "; ") + transfer.told();
    app.frmMain.lblStatus.notice = told;
    for (const std::string& name : transfer.wantedToo())
      aircraft.push_back(carriedFromHangar(app, name));
  }
  app.frmMain.lblStatus.caption = "";
}

}  // namespace skv
