#include "packaging/package_job.h"

#include <algorithm>
#include <set>
#include <utility>

#include "base/paths.h"
#include "base/text.h"
#include "core/collect_files.h"
#include "core/disk_queries.h"
#include "core/folder_guard.h"
#include "core/long_operation.h"
#include "core/messages.h"
#include "core/stores.h"
#include "core/working_folder.h"
#include "scenery/scenery_row.h"

namespace skv {

namespace {

constexpr int yieldsAfterUnpackage = 10000;
constexpr int packageBit = 2;
constexpr const char* mainPart = "Main\\";

std::string counted(std::size_t files) {
  return std::to_string(files) + (files == 1 ? " file" : " files");
}

}  // namespace

const PackageKind aircraftKind{"Aircraft\\", "This Aircraft is already compressed!",
                               "This Aircraft not yet compressed!", &ui::FrmMain::lstAircraft};
const PackageKind sceneryKind{"Scenery\\", "This Scenery is already compressed!",
                              "This Scenery not yet compressed!", &ui::FrmMain::lstInactScenery};

PackageJob::PackageJob(App& app, const PackageKind& kind)
    : app_(app),
      files_(app.files()),
      kind_(kind),
      isAircraft_(&kind == &aircraftKind),
      title_(list().text(list().selected())),
      name_(nameOf(list().selected())),
      store_(isAircraft_ ? app.HangarDir : app.SceneryLib),
      root_(isAircraft_ ? aircraftRootOf(store_) : sceneryRootOf(store_)),
      packages_(isAircraft_ ? app.PacksDir : app.SceneryPacksPath),
      package_(packages_ + name_ + packageEnd),
      folder_(folderOf(list().selected())),
      main_(mainRootOf(store_) + name_ + "\\"),
      work_(app.InstallTempDir + "Package\\"),
      thinning_(app, {{folder_, kind.part}, {main_, mainPart}}) {}

void PackageJob::compress() {
  if (!isElementName(name_)) return;
  const StoppableOperation operation(app_);
  const DisabledForm busy(app_.frmMain);
  const Presence package = lookForPackage();
  if (package == Presence::unknown || (package == Presence::there && leavesNothingToThin())) return;
  if (!sourceStands() || !mayBegin(mayBeGivenUp(app_, {folder_, root_, foldersOfOthers()}))) return;
  // Where there is a Package, an earlier run was cut off before it had thinned the folders out.
  if (package == Presence::there ? packageIsWhole() : makePackages() && pack())
    thin();
  else if (app_.stopRequested)
    notice("Stopped: \"" + title_ + "\" stays as it was");
  leaveWork();
  status("");
}

void PackageJob::uncompress() {
  if (!isElementName(name_)) return;
  const Presence package = lookForPackage();
  if (package == Presence::absent) return tell(kind_.notYetCompressed);
  if (package == Presence::unknown || !mayBegin(mayBeFilled(app_, {folder_, root_})) ||
      !isTheOneMeant())
    return;
  const StoppableOperation operation(app_);
  const DisabledForm busy(app_.frmMain);
  if (unpack())
    mark(false);
  else if (app_.stopRequested)
    notice("Stopped: the Package of \"" + title_ + "\" stays, and unpacking it again finishes it");
  leaveWork();
  status("");
}

// By the disk; the row says what is true from now on.
Presence PackageJob::lookForPackage() {
  const auto found = files_.attributes(package_);
  const Presence presence = found.ok() ? Presence::there : presenceBy(found.outcome());
  if (presence == Presence::unknown)
    ReportError(app_, found.outcome());
  else
    mark(presence == Presence::there);
  return presence;
}

// Whether an add-on that has its Package needs no more work; or its folders cannot be looked
// through.
bool PackageJob::leavesNothingToThin() {
  const WalkReport looked = thinning_.collect();
  status("");
  const bool nothing = done(looked) && thinning_.count() == 0;
  if (nothing) tell(kind_.alreadyCompressed);
  return nothing || !looked.complete();
}

// Without its folder an add-on would be packed as an empty one.
bool PackageJob::sourceStands() {
  const auto found = files_.attributes(folder_);
  Outcome stands = found.outcome();
  if (const std::string other = namesake(); stands.ok() && !other.empty())
    stands = Outcome::withText(err::pathFileAccess, "The aircraft in \"" + other +
                                                        "\" would have the same Package, \"" +
                                                        fileName(package_) + "\".");
  if (!stands.ok()) tellFailure(app_, "\"" + title_ + "\" was not compressed.", stands);
  return stands.ok();
}

bool PackageJob::mayBegin(Outcome may) {
  if (may.ok()) may = mayBeFilled(app_, {main_, mainRootOf(store_)});
  if (may.ok()) may = clearWorkingFolders(app_);
  if (!may.ok()) tellFailure(app_, "\"" + name_ + "\" stays as it is.", may);
  return may.ok();
}

// A Package has the name of its aircraft's folder, and says no more about where that lies.
bool PackageJob::isTheOneMeant() {
  const std::string other = namesake();
  return other.empty() ||
         app_.windows.messageBox(
             {.text = "\"" + fileName(package_) + "\" will be unpacked into\r\n" + folder_ +
                      "\r\nAnother aircraft has a folder of the same name:\r\n" + other +
                      "\r\n\r\nIs it the Package of \"" + title_ + "\", in the first of them?",
              .icon = ui::BoxIcon::question,
              .buttons = ui::BoxButtons::yesNo,
              .defaultButton = ui::DefaultButton::no}) == ui::Answer::yes;
}

bool PackageJob::makePackages() {
  if (!folderExists(files_, packages_) &&
      (folderExists(files_, folderAbove(packages_)) || mayBeMadeUnasked(app_, packages_)))
    MakePath(files_, packages_);
  const auto found = files_.attributes(packages_);
  return !ReportError(app_, found.outcome());
}

// A folder of its own in the working folder: what else lies there belongs to others.
bool PackageJob::makeWork() {
  return !ReportError(app_, files_.makeFolder(work_)) &&
         !ReportError(app_, files_.setCurrentFolder(work_));
}

void PackageJob::leaveWork() {
  files_.setCurrentFolder(app_.InstallTempDir).skipped();
  clearWorkingFolders(app_).skipped();
}

// Makes the Package, whole and on the disk, and finds in it all that is to go.
bool PackageJob::pack() {
  if (!makeWork()) return false;
  WalkReport copied;
  for (const auto& [source, part] : {std::pair(folder_, kind_.part), std::pair(main_, mainPart)}) {
    const std::string target = work_ + part;
    copied.note(files_.makeFolder(target), target);
    if (copied.complete()) copied += WalkTree(app_, source, target, WalkCopy, true);
  }
  if (!done(copied)) return false;
  if (!done(collectFiles(app_, work_, app_.PackFileList))) return false;
  status("Compressing: " + name_ + packageEnd + " ...");
  if (!AddToArchive(app_, package_, false)) {
    mark(PathExists(files_, package_));
    return false;
  }
  // What lies here would be put on the disk as well, for nothing.
  clearWorkingFolders(app_).skipped();
  WalkReport kept;
  kept.note(files_.flushDisk(packages_), package_);
  if (kept.complete()) kept += thinning_.collect();
  if (kept.complete()) kept += thinning_.verify(package_);
  if (kept.complete()) return true;
  files_.deleteFile(package_).skipped();
  return done(kept);
}

// Whether the Package that stands can be relied on: nobody knows how the run that made it has
// ended, or whether it was one of ours.
bool PackageJob::packageIsWhole() {
  status("Checking: " + name_ + packageEnd + " ...");
  WalkReport flushed;
  flushed.note(files_.flushDisk(packages_), package_);
  if (!done(flushed)) return false;
  if (const WalkReport held = thinning_.verify(package_); held.failed > 0) {
    tell(kind_.alreadyCompressed +
             ("\r\n\r\nIts folders hold files again that \"" + fileName(package_)) +
             "\" does not hold, or not as they are. All of them stay.",
         held.where + "\r\n" + held.first.description());
    return false;
  }
  // After a power cut the list of its entries may be whole, and their data not.
  ReadAndExtract job(app_);
  return !app_.stopRequested && makeWork() && job.open(package_) && job.fits(app_.InstallTempDir) &&
         job.extract(work_, yieldsAfterUnpackage);
}

void PackageJob::thin() {
  status("Deleting temporary files...");
  const WalkReport thinned = thinning_.thin();
  mark(true);
  if (tellWalk(app_, thinned, "deleted"))
    notice("\"" + title_ + "\" is compressed: " + counted(thinned.done) + " moved from \"" +
           folder_ + "\" to \"" + fileName(package_) + "\"");
}

bool PackageJob::unpack() {
  if (!makeWork()) return false;
  status("Unpacking: " + name_ + packageEnd + " ...");
  ReadAndExtract job(app_);
  if (!job.open(package_) || !job.fits(store_) || !job.extract(work_, yieldsAfterUnpackage))
    return false;
  freeTargets(job);
  WalkReport moved;
  for (const auto& [part, target] : {std::pair(kind_.part, folder_), std::pair(mainPart, main_)}) {
    if (moved.stopped || !folderExists(files_, work_ + part)) continue;
    MakePath(files_, target);
    moved += WalkTree(app_, work_ + part, target, WalkMove, false);
  }
  if (moved.complete()) moved.note(files_.flushDisk(store_), store_);
  if (!done(moved) || !allArrived(job, moved)) return false;
  status("Deleting temporary files...");
  if (ReportError(app_, files_.deleteFile(package_))) return false;
  notice("\"" + title_ + "\" is unpacked: " + counted(moved.done) + " back in \"" + folder_ +
         "\", and the Package is gone");
  return true;
}

std::string PackageJob::pathOf(const std::string& entry) {
  std::string path = composed(entry);
  std::ranges::replace(path, '/', '\\');
  return path;
}

std::string PackageJob::placeOf(const std::string& path) const {
  for (const auto& [part, folder] : {std::pair(std::string_view(kind_.part), &folder_),
                                     std::pair(std::string_view(mainPart), &main_)})
    if (equalsIgnoringCase(path.substr(0, part.size()), part))
      return *folder + path.substr(part.size());
  return {};
}

// Read-only files stay when an add-on is thinned out, and no move replaces one. Those that the
// moves are to replace are freed: all in subfolders, and directly in the folder the older ones.
void PackageJob::freeTargets(const ReadAndExtract& job) {
  for (const std::string& entry : job.names()) {
    const std::string path = pathOf(entry), place = placeOf(path);
    if (place.empty()) continue;
    auto found = files_.attributes(place);
    if (!found.ok() || found.value().folder || !found.value().readOnly) continue;
    const bool onTop = std::ranges::count(path, '\\') == 1;
    const auto packed = files_.modified(work_ + path), now = files_.modified(place);
    if (onTop && packed.ok() && now.ok() && packed.value() <= now.value()) continue;
    found.value().readOnly = false;
    files_.setAttributes(place, found.value()).skipped();
  }
}

// Whether the Package may go: all of it lies in the add-on's folders, under its own names.
bool PackageJob::allArrived(const ReadAndExtract& job, const WalkReport& moved) {
  std::string strays;
  // Of two names that differ in case alone one file has taken the other's place.
  std::set<std::string> seen;
  for (const std::string& entry : job.names()) {
    const std::string path = pathOf(entry), place = placeOf(path);
    const bool isFolder = path.ends_with('\\');
    if ((!isFolder && !seen.insert(upper(path)).second) || place.empty() ||
        !files_.attributes(withoutBackslash(place)).ok())
      strays += entry + "\r\n";
  }
  for (const RenamedEntry& entry : job.renamed())
    strays += entry.from + "  ->  " + entry.to + "\r\n";
  if (strays.empty() && moved.sourceMayGo()) return true;
  app_.windows.messageBox(
      {.text = "\"" + name_ +
               "\" is unpacked, and its Package stays: it holds files that have no place in the "
               "add-on's folders, or not under their names.",
       .icon = ui::BoxIcon::exclamation,
       .details = strays});
  return false;
}

void PackageJob::tell(const std::string& text, const std::string& details) {
  app_.windows.messageBox({.text = text, .icon = ui::BoxIcon::information, .details = details});
}

bool PackageJob::done(const WalkReport& report) {
  if (report.failed > 0)
    app_.windows.messageBox({.text = "ERROR during ZIP operation!",
                             .icon = ui::BoxIcon::exclamation,
                             .details = report.where + "\r\n" + report.first.description()});
  return report.complete();
}

// Every row of the add-on tells that there is a Package now, or that there is none.
void PackageJob::mark(bool compressed) {
  for (int row = 1; row <= list().count(); ++row)
    if (equalsIgnoringCase(nameOf(row), name_)) {
      const int places = (iconOf(row) - 1) & ~packageBit;
      list().setSmallIcon(row, (compressed ? places | packageBit : places) + 1);
    }
}

// A row that has none yet is nowhere else.
int PackageJob::iconOf(int row) { return std::max(1, list().smallIcon(row)); }

// The name of a row's add-on.
std::string PackageJob::nameOf(int row) {
  const std::string& folder = list().subItem(row, 1);
  return isAircraft_ ? FolderName(withBackslash(folder)) : leafOf(folder);
}

// The folder that a row of the list stands for.
std::string PackageJob::folderOf(int row) {
  const std::string& folder = list().subItem(row, 1);
  return isAircraft_ ? withBackslash(folder) : root_ + leafOf(folder) + "\\";
}

// Rows that share the folder share its Package, too.
std::vector<std::string> PackageJob::foldersOfOthers() {
  std::vector<std::string> others;
  for (int row = 1; row <= list().count(); ++row)
    if (std::string other = folderOf(row); !equalsIgnoringCase(other, folder_))
      others.push_back(std::move(other));
  return others;
}

}  // namespace skv
