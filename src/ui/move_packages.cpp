#include "ui/move_packages.h"

#include "base/paths.h"
#include "base/text.h"
#include "core/disk_queries.h"
#include "core/folder_guard.h"
#include "core/long_operation.h"
#include "core/messages.h"
#include "core/settings_keys.h"
#include "core/walktree.h"

namespace skv {

namespace {

// A folder that is not there holds none.
Result<bool> holdsPackages(const FileSystem& files, const std::string& folder) {
  const auto listing = files.list(folder);
  if (!listing.ok() && presenceBy(listing.outcome()) == Presence::unknown) return listing.outcome();
  if (!listing.ok()) return false;
  for (const FolderEntry& entry : listing.value())
    if (!entry.folder && upper(entry.name).ends_with(".ZIP")) return true;
  return false;
}

// Moves all files and folders below a folder. Not WalkMove: that takes away a file whose target is
// newer.
class PackagesMove {
 public:
  explicit PackagesMove(App& app) : app_(app), files_(app.files()) {}

  WalkReport run(const std::string& from, const std::string& to) {
    folder(from, to);
    return report_;
  }

 private:
  void folder(const std::string& from, const std::string& to) {
    const auto listing = files_.list(from);
    if (!report_.note(listing.outcome(), from)) return;
    for (const FolderEntry& entry : listing.value()) {
      if (app_.stopRequested) {
        report_.stopped = true;
        return;
      }
      const std::string source = from + entry.name, target = to + entry.name;
      if (files_.isLink(source)) {
        report_.note(Outcome::withText(err::pathFileAccess, "It is a link."), source);
      } else if (!entry.folder) {
        file(source, target);
      } else {
        files_.makeFolder(target).skipped();
        folder(source + "\\", target + "\\");
        files_.removeFolder(source).skipped();  // not one that still holds something
      }
      app_.windows.yield();
    }
  }

  void file(const std::string& source, const std::string& target) {
    app_.frmMain.lblStatus.caption = "Moving " + source;
    Outcome moved = mayReplace(source, target);
    if (moved.ok()) moved = files_.moveFile(source, target);
    if (report_.note(moved, source)) ++report_.done;
  }

  Outcome mayReplace(const std::string& source, const std::string& target) const {
    const auto standing = files_.modified(target);
    if (!standing.ok())
      return presenceBy(standing.outcome()) == Presence::absent ? Outcome() : standing.outcome();
    const auto moving = files_.modified(source);
    if (!moving.ok()) return moving.outcome();
    if (standing.value() <= moving.value()) return {};
    return Outcome::withText(err::fileExists, "The new folder holds a newer file of this name.");
  }

  App& app_;
  FileSystem& files_;
  WalkReport report_;
};

Outcome mayMove(const App& app, const std::string& from, const std::string& to) {
  if (isOrHolds(from, to) || isOrHolds(to, from))
    return Outcome::withText(err::pathFileAccess,
                             "One of the two folders lies in the other: \"" + to + "\".");
  return mayBeEmptied(app, from);
}

void forgetMove(App& app) { writeSetting(app, setting::PacksMoveFrom, "").skipped(); }

void move(App& app, const std::string& from, ui::Form& window, const std::string& question) {
  if (app.windows.messageBox({question, ui::BoxIcon::question, ui::BoxButtons::yesNo}) !=
      ui::Answer::yes)
    return forgetMove(app);
  const DisabledForm busy(window);
  const HourglassPointer pointer(app);
  const WalkReport report = PackagesMove(app).run(from, app.PacksDir);
  app.files().removeFolder(withoutBackslash(from)).skipped();  // not one that still holds something
  if (report.complete()) forgetMove(app);
  app.frmMain.lblStatus.caption = "";
  tellWalk(app, report, "moved");
}

}  // namespace

void offerToMovePackages(App& app) {
  const std::string from = readSetting(app, setting::PacksMoveFrom);
  if (from.empty()) return;
  const auto found = holdsPackages(app.files(), from);
  if (found.ok() && !found.value()) return forgetMove(app);
  const Outcome may = found.ok() ? mayMove(app, from, app.PacksDir) : found.outcome();
  if (may.ok())
    move(app, from, app.frmSettings, "Move existing Packages to the new Packages Folder?");
  else
    tellFailure(app, "The Packages in \"" + from + "\" stay where they are.", may);
}

void offerToFinishMove(App& app) {
  const std::string from = readSetting(app, setting::PacksMoveFrom);
  if (from.empty() || !diskIsThere(app.files(), from)) return;
  const auto rest = app.files().list(from);
  if (!rest.ok() && presenceBy(rest.outcome()) == Presence::unknown) return;
  if (rest.valueOr({}).empty() || equalsIgnoringCase(from, app.PacksDir)) return forgetMove(app);
  // What the settings have refused has been told there.
  if (!mayMove(app, from, app.PacksDir).ok()) return;
  move(app, from, app.frmMain,
       "The Packages have not all moved to their new folder yet.\r\n\r\nOld folder: " + from +
           "\r\nNew folder: " + app.PacksDir +
           "\r\n\r\nMove the rest now? After a No they stay in the old folder.");
}

}  // namespace skv
