#include "packaging/package_commands.h"

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "aircraft/aircraft_views.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/disk_queries.h"
#include "core/folder_guard.h"
#include "core/long_operation.h"
#include "core/messages.h"
#include "core/stores.h"
#include "core/view.h"
#include "core/walktree.h"
#include "core/working_folder.h"
#include "core/zip_service.h"
#include "scenery/scenery_row.h"

namespace skv {

namespace {

constexpr int yieldsAfterExtraction = 10000;
constexpr int packageBit = 2;

// The kinds of add-ons that have Packages.
struct PackageKind {
  const char* part;  // its folder in a Package, with trailing backslash
  const char *alreadyCompressed, *notYetCompressed;
  ui::ListView ui::FrmMain::*list;
};

constexpr PackageKind aircraftKind{"Aircraft\\", "This Aircraft is already compressed!",
                                   "This Aircraft not yet compressed!", &ui::FrmMain::lstAircraft};
constexpr PackageKind sceneryKind{"Scenery\\", "This Scenery is already compressed!",
                                  "This Scenery not yet compressed!",
                                  &ui::FrmMain::lstInactScenery};

constexpr const char* mainPart = "Main\\";

// The paths of a folder's files, relative to it.
WalkReport collect(App& app, const std::string& folder, std::vector<std::string>& files) {
  const auto others = std::exchange(app.PackFileList, {});
  WalkReport report = WalkTree(app, folder, "", WalkCollect, true);
  files = std::exchange(app.PackFileList, others);
  return report;
}

class PackageJob {
 public:
  // Of the row that is selected in the list of its kind.
  PackageJob(App& app, const PackageKind& kind)
      : app_(app), files_(app.files()), kind_(kind), isAircraft_(&kind == &aircraftKind) {
    name_ = nameOf(list().selected());
    store_ = isAircraft_ ? app.HangarDir : app.SceneryLib;
    root_ = isAircraft_ ? aircraftRootOf(store_) : sceneryRootOf(store_);
    packages_ = isAircraft_ ? app.PacksDir : app.SceneryPacksPath;
    package_ = packages_ + name_ + packageEnd;
    folder_ = folderOf(list().selected());
    main_ = mainRootOf(store_) + name_ + "\\";
    work_ = app.InstallTempDir + "Package\\";
  }

  void compress() {
    if (!stateIs(false) || !mayBegin(mayBeGivenUp(app_, {folder_, root_, foldersOfOthers()})))
      return;
    if (!makePackages()) return;
    const StoppableOperation operation(app_);
    const DisabledForm busy(app_.frmMain);
    if (pack()) {
      status("Deleting temporary files...");
      const WalkReport thinned = thin();
      mark(true);
      tellWalk(app_, thinned, "deleted");
    }
    leaveWork();
    status("");
  }

  void uncompress() {
    if (!stateIs(true) || !mayBegin(mayBeFilled(app_, {root_ + name_ + "\\", root_}))) return;
    const StoppableOperation operation(app_);
    const DisabledForm busy(app_.frmMain);
    if (unpack()) mark(false);
    leaveWork();
    status("");
  }

 private:
  ui::ListView& list() { return app_.frmMain.*kind_.list; }
  void status(const std::string& text) { app_.frmMain.lblStatus.caption = text; }

  // Whether the add-on is compressed or not, as wanted, by its row and on disk. If not, the user is
  // told, and the row says what is true from now on.
  bool stateIs(bool compressed) {
    if (!isElementName(name_)) return false;
    const auto found = files_.attributes(package_);
    if (!found.ok() && presenceBy(found.outcome()) == Presence::unknown)
      return !ReportError(app_, found.outcome());
    mark(found.ok());
    if (found.ok() == compressed) return true;
    app_.windows.messageBox(
        {compressed ? kind_.notYetCompressed : kind_.alreadyCompressed, ui::BoxIcon::information});
    return false;
  }

  bool mayBegin(Outcome may) {
    if (may.ok()) may = mayBeFilled(app_, {main_, mainRootOf(store_)});
    if (may.ok()) may = clearWorkingFolders(app_);
    if (!may.ok()) tellFailure(app_, "\"" + name_ + "\" stays as it is.", may);
    return may.ok();
  }

  bool makePackages() {
    if (!folderExists(files_, packages_) &&
        (folderExists(files_, folderAbove(packages_)) || mayBeMadeUnasked(app_, packages_)))
      MakePath(files_, packages_);
    const auto found = files_.attributes(packages_);
    return !ReportError(app_, found.outcome());
  }

  // A folder of its own in the working folder: what else lies there belongs to others.
  bool makeWork() {
    return !ReportError(app_, files_.makeFolder(work_)) &&
           !ReportError(app_, files_.setCurrentFolder(work_));
  }
  void leaveWork() {
    files_.setCurrentFolder(app_.InstallTempDir).skipped();
    clearWorkingFolders(app_).skipped();
  }

  // The Package, whole and on the disk.
  bool pack() {
    if (!makeWork()) return false;
    WalkReport copied;
    for (const auto& [source, part] :
         {std::pair(folder_, kind_.part), std::pair(main_, mainPart)}) {
      const std::string target = work_ + part;
      copied.note(files_.makeFolder(target), target);
      if (copied.complete()) copied += WalkTree(app_, source, target, WalkCopy, true);
    }
    if (!done(copied)) return false;
    if (!done(collect(app_, work_, app_.PackFileList))) return false;
    status("Compressing: " + name_ + packageEnd + " ...");
    if (!AddToArchive(app_, package_, false)) {
      mark(PathExists(files_, package_));
      return false;
    }
    // What lies here would be put on the disk as well, for nothing.
    clearWorkingFolders(app_).skipped();
    WalkReport kept;
    kept.note(files_.flushDisk(packages_), package_);
    if (kept.complete()) kept += verify();
    if (kept.complete()) return true;
    files_.deleteFile(package_).skipped();
    return done(kept);
  }

  // A file that the Package holds, as it was then.
  struct Packed {
    std::string path;
    FileState state;
  };

  // Looks up in the Package every file that thinning would delete, and notes it in packed_.
  WalkReport verify() {
    WalkReport report;
    packed_.clear();
    const auto zip = app_.platform.zip.load(files_);
    if (!report.note(zip->setArchivefile(package_), package_)) return report;
    for (const auto& [folder, part] :
         {std::pair(folder_, kind_.part), std::pair(main_, mainPart)}) {
      std::vector<std::string> files;
      report += collect(app_, folder, files);
      for (const std::string& file : files) {
        if (staysWhenThinned(fileName(file))) continue;
        const std::string path = folder + file;
        const auto state = files_.fileState(path);
        if (report.note(state.ok() ? zip->holdsFile(part + file, path) : state.outcome(), path))
          packed_.push_back({path, state.value()});
        app_.windows.yield();
        if (!report.complete() || app_.stopRequested) break;
      }
    }
    report.stopped = report.stopped || app_.stopRequested;
    for (const Packed& file : packed_)
      if (!report.note(unchanged(file), file.path)) break;
    return report;
  }

  Outcome unchanged(const Packed& file) const {
    const auto now = files_.fileState(file.path);
    if (!now.ok()) return now.outcome();
    if (now.value().modified == file.state.modified && now.value().length == file.state.length)
      return {};
    return Outcome::withText(err::pathFileAccess, "\"" + file.path + "\" has changed meanwhile.");
  }

  // Deletes what the Package holds and nothing else: not what has come since. Behind a link nothing
  // goes.
  WalkReport thin() {
    WalkReport report;
    std::map<std::string, bool> reached{{folderAbove(folder_), true}, {folderAbove(main_), true}};
    const std::function<bool(const std::string&)> reaches = [&](const std::string& folder) {
      if (const auto known = reached.find(folder); known != reached.end()) return known->second;
      const auto link = isLinkForCertain(files_, withoutBackslash(folder));
      if (!link.ok()) report.note(link.outcome(), folder);
      return reached[folder] = link.ok() && !link.value() && reaches(folderAbove(folder));
    };
    for (const Packed& file : packed_) {
      if (!reaches(folderAbove(file.path))) continue;
      if (report.note(unchanged(file), file.path)) {
        files_.setAttributes(file.path, {}).skipped();
        if (report.note(files_.deleteFile(file.path), file.path)) ++report.done;
      }
      app_.windows.yield();
    }
    return report;
  }

  bool unpack() {
    if (!makeWork()) return false;
    status("Unpacking: " + name_ + packageEnd + " ...");
    ReadAndExtract job(app_);
    if (!job.open(package_) || !job.fits(store_) || !job.extract(work_, yieldsAfterExtraction))
      return false;
    freeTargets(job);
    WalkReport moved;
    for (const auto& [part, target] :
         {std::pair(kind_.part, root_ + name_ + "\\"), std::pair(mainPart, main_)}) {
      if (moved.stopped || !folderExists(files_, work_ + part)) continue;
      MakePath(files_, target);
      moved += WalkTree(app_, work_ + part, target, WalkMove, false);
    }
    if (moved.complete()) moved.note(files_.flushDisk(store_), store_);
    if (!done(moved)) return false;
    if (!allArrived(job, moved)) return false;
    status("Deleting temporary files...");
    return !ReportError(app_, files_.deleteFile(package_));
  }

  // The path of an entry below the working folder, and its place in the add-on, "" for none.
  static std::string pathOf(const std::string& entry) {
    std::string path = composed(entry);
    std::ranges::replace(path, '/', '\\');
    return path;
  }
  std::string placeOf(const std::string& path) const {
    const std::string target = root_ + name_ + "\\";
    for (const auto& [part, folder] : {std::pair(std::string_view(kind_.part), &target),
                                       std::pair(std::string_view(mainPart), &main_)})
      if (equalsIgnoringCase(path.substr(0, part.size()), part))
        return *folder + path.substr(part.size());
    return {};
  }

  // Read-only files stay when an add-on is thinned out, and no move replaces one. Those that the
  // moves are to replace are freed: all in subfolders, and directly in the folder the older ones.
  void freeTargets(const ReadAndExtract& job) {
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
  bool allArrived(const ReadAndExtract& job, const WalkReport& moved) {
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

  // Tells of a step that has failed. Nothing has been thinned by then, and the Package stays.
  bool done(const WalkReport& report) {
    if (report.failed > 0)
      app_.windows.messageBox({.text = "ERROR during ZIP operation!",
                               .icon = ui::BoxIcon::exclamation,
                               .details = report.where + "\r\n" + report.first.description()});
    else if (report.stopped)
      app_.frmMain.lblStatus.notice = "Stopped: \"" + name_ + "\" stays as it was";
    return report.complete();
  }

  // Every row of the add-on tells that there is a Package now, or that there is none.
  void mark(bool compressed) {
    for (int row = 1; row <= list().count(); ++row)
      if (equalsIgnoringCase(nameOf(row), name_)) {
        const int places = (iconOf(row) - 1) & ~packageBit;
        list().setSmallIcon(row, (compressed ? places | packageBit : places) + 1);
      }
  }

  // A row that has none yet is nowhere else.
  int iconOf(int row) { return std::max(1, list().smallIcon(row)); }

  // The name of a row's add-on.
  std::string nameOf(int row) {
    const std::string& folder = list().subItem(row, 1);
    return isAircraft_ ? FolderName(withBackslash(folder)) : leafOf(folder);
  }

  // The folder that a row of the list stands for.
  std::string folderOf(int row) {
    const std::string& folder = list().subItem(row, 1);
    return isAircraft_ ? withBackslash(folder) : root_ + leafOf(folder) + "\\";
  }

  // Rows that share the folder share its Package, too.
  std::vector<std::string> foldersOfOthers() {
    std::vector<std::string> others;
    for (int row = 1; row <= list().count(); ++row)
      if (std::string other = folderOf(row); !equalsIgnoringCase(other, folder_))
        others.push_back(std::move(other));
    return others;
  }

  App& app_;
  FileSystem& files_;
  const PackageKind& kind_;
  const bool isAircraft_;
  std::string name_, store_, root_, packages_, package_;
  std::string folder_, main_;  // of the add-on, with trailing backslash
  std::string work_;
  std::vector<Packed> packed_;
};

// The job for the selected row; none where there is nothing to do.
std::optional<PackageJob> jobOfSelection(App& app) {
  const bool scenery = app.frmMain.frameScenery.visible;
  const PackageKind& kind = scenery ? sceneryKind : aircraftKind;
  if ((app.frmMain.*kind.list).selected() == 0) return {};
  if (app.InstallTempDir.size() < 3 || app.InstallTempDir[1] != ':') {
    app.windows.messageBox({"This feature does not support UNC!", ui::BoxIcon::exclamation});
    return {};
  }
  if (!scenery && inFSView(app)) {
    mnuViewHangar_Click(app);
    return {};
  }
  return std::optional<PackageJob>(std::in_place, app, kind);
}

}  // namespace

void mnuFilePackage_Click(App& app) {
  if (auto job = jobOfSelection(app)) job->compress();
}

void mnuFileUnpackage_Click(App& app) {
  if (auto job = jobOfSelection(app)) job->uncompress();
}

}  // namespace skv
