#include "packaging/addon_archive.h"

#include <algorithm>
#include <utility>

#include "base/paths.h"
#include "core/addon_name.h"
#include "core/collect_files.h"
#include "core/disk_queries.h"
#include "core/folder_guard.h"
#include "core/messages.h"
#include "core/settings_keys.h"
#include "core/staged_folder.h"
#include "core/stores.h"
#include "core/working_folder.h"

namespace skv {

namespace {

constexpr int yieldsAfterChoice = 1000;
constexpr int yieldsAfterExtraction = 500;
constexpr int triesToDelete = 5;
constexpr int yieldsBetweenTries = 100;

}  // namespace

AddonArchive::AddonArchive(App& app, AddonStore store)
    : app_(app), store_(std::move(store)), runFolder_(decimal(app.platform.clock.now()) + "\\") {}

bool AddonArchive::choose() {
  if (!app_.PendingZIP.empty()) {
    path_ = std::exchange(app_.PendingZIP, {});
  } else {
    auto picked = app_.windows.openFile({app_.LastZIPDir, "Zip Files|*.zip"});
    if (!picked.ok()) {
      if (picked.outcome().number() != err::cancelled) ReportError(app_, picked.outcome());
      return false;
    }
    app_.LastZIPDir = picked.value().initialFolder;
    writeSetting(app_, setting::LastZIPDir, app_.LastZIPDir).skipped();
    path_ = std::move(picked).value().path;
  }
  app_.windows.yieldTimes(yieldsAfterChoice);
  if (const Outcome may = mayBeEmptied(app_, app_.InstallTempDir); !may.ok()) {
    tellFailure(app_, "An installation empties the working folder, and so it does not start.", may);
    return false;
  }
  status("Extracting ZIP: " + path_);
  return true;
}

std::string AddonArchive::proposedName() const {
  const std::string file = fileName(path_);
  const std::size_t end = std::string_view(packageEnd).size();
  return nearestAddonName(app_, store_.addons,
                          file.substr(0, file.size() - std::min(file.size(), end)));
}

// Each further question offers a name that can be, so that they end.
bool AddonArchive::askName() {
  std::string offered = proposedName();
  for (;;) {
    const auto answer =
        app_.windows.inputBox("Foldername for aircraft:", ui::programTitle, offered);
    if (!answer) return false;
    name_ = *answer;
    const std::string fault = faultOfAddonName(app_, store_.addons, name_);
    if (fault.empty()) break;
    app_.windows.messageBox(
        {"\"" + name_ + "\" cannot be the folder's name.\r\n" + fault, ui::BoxIcon::exclamation});
    offered = nearestAddonName(app_, store_.addons, name_);
  }
  return isNameFree();
}

bool AddonArchive::isNameFree() {
  // An empty name is the folder of all add-ons, whether that stands or not.
  StandingAddon found{Standing::notWhole};
  if (!name_.empty())
    found = standingAddon(app_, store_.type, store_.addons + name_,
                          store_.packages + name_ + packageEnd);
  standing_ = found.standing;
  if (standing_ == Standing::unknown) return !ReportError(app_, found.why);
  nameTaken_ = standing_ != Standing::absent && !mayPutAside();
  return !nameTaken_;
}

// A folder that is in the way without being the add-on gives its name to it, and nothing of it is
// lost. One that stands is never touched.
bool AddonArchive::mayPutAside() {
  const std::string taken = std::string(store_.kind) + " '" + name_ + "' already exists!";
  std::string rest;
  if (standing_ == Standing::notWhole && !name_.empty()) {
    const auto listing = app_.files().list(store_.addons + name_ + "\\", FileSystem::Entries::all);
    if (ReportError(app_, listing.outcome())) return false;
    if (listing.value().empty()) return true;
    for (const FolderEntry& entry : listing.value()) rest += entry.name + "\r\n";
  }
  if (rest.empty()) {
    app_.windows.messageBox({taken, ui::BoxIcon::exclamation});
    return false;
  }
  return app_.windows.messageBox(
             {.text = taken + "\r\n\r\nBut the folder \"" + store_.addons + name_ +
                      "\" holds no whole add-on. Keep what is in it under another name, such as "
                      "\"" +
                      fileName(freePath(app_.files(), store_.addons, name_)) +
                      "\", and install this one?",
              .icon = ui::BoxIcon::exclamation,
              .buttons = ui::BoxButtons::yesNo,
              .defaultButton = ui::DefaultButton::no,
              .details = rest}) == ui::Answer::yes;
}

bool AddonArchive::unpack() {
  ReadAndExtract job(app_);
  if (!job.open(path_)) return false;
  if (ReportError(app_, clearWorkingFolders(app_))) return false;
  status("Extracting ZIP: " + path_);
  unpacks_ = true;
  const std::string target = app_.InstallTempDir + runFolder_;
  if (ReportError(app_, app_.files().makeFolder(target)) || !job.fits(store_.folder) ||
      !job.extract(target, yieldsAfterExtraction))
    return false;
  noteRenamed(job, {});
  return true;
}

void AddonArchive::noteRenamed(const ReadAndExtract& job, const std::string& embedded) {
  for (const RenamedEntry& entry : job.renamed()) {
    ++renamed_;
    renamedNames_ += embedded + entry.from + "  ->  " + entry.to + "\r\n";
  }
}

void AddonArchive::tellRest(const LeftOver& leftOver) {
  ui::Box box{"", ui::BoxIcon::information};
  if (renamed_ > 0) {
    box.text = "Names in the archive that this disk cannot take: " + std::to_string(renamed_) +
               ". Their files got other names, by which an add-on may not find them.";
    box.details = renamedNames_;
  }
  if (leftOver.count() > 0) {
    const bool one = leftOver.count() == 1;
    const std::string& names = leftOver.names();
    if (!box.text.empty()) box.text += "\r\n\r\n";
    if (!box.details.empty()) box.details += "\r\n";
    box.text += "\"" + name_ +
                "\" is installed. Left over in the archive: " + std::to_string(leftOver.count()) +
                (one ? " file, " : " files, the first: ") + "\"" +
                names.substr(0, names.find('\r')) + "\". " +
                (one ? "It is kept" : "They are kept") + " until the next start of FS Skyvault.";
    box.details += names;
    box.buttons = ui::BoxButtons::yesNo;
    box.defaultButton = ui::DefaultButton::no;
    box.yes = "Show what was left over";
    box.no = "OK";
  }
  if (!box.text.empty() && app_.windows.messageBox(box) == ui::Answer::yes)
    ShellOpen(app_, leftOver.folder());
}

// An archive inside the archive is unpacked beside the run's folder. The search looks into that
// folder only, so an archive inside such an archive stays as it is.
bool AddonArchive::unpackEmbedded() {
  const std::string run = app_.InstallTempDir + runFolder_;
  std::vector<std::string> files;
  const WalkReport search = collectFiles(app_, run, files);
  if (search.stopped || !tellWalk(app_, search, "searched")) return false;
  for (const std::string& file : files) {
    if (app_.stopRequested) return false;
    if (lowerAscii(file).ends_with(packageEnd) &&
        !unpackOneEmbedded(folderAbove(run + file), fileName(file)))
      return false;
  }
  return true;
}

bool AddonArchive::unpackOneEmbedded(const std::string& folder, const std::string& name) {
  FileSystem& files = app_.files();
  const std::string path = folder + name;
  const auto fails = [&](const Outcome& outcome) {
    return !outcome.ok() &&
           ReportError(app_,
                       Outcome::withText(outcome.number(), outcome.description() + "\r\n\"" + name +
                                                               "\" lies in \"" + path_ + "\"."));
  };
  status("Extracting embedded ZIP: " + name);
  const auto length = files.fileLength(path);
  if (fails(length.outcome())) return false;
  if (length.value() == 0)
    return !fails(Outcome::withText(err::zip, "The embedded ZIP \"" + name + "\" is empty."));

  // Archives of one name in two folders are two.
  const std::string all = app_.InstallTempDir + "_" + runFolder_;
  MakePath(files, withoutBackslash(all));
  const std::string target = freePath(files, all, "SKV" + name);
  if (fails(files.makeFolder(target))) return false;
  {
    ReadAndExtract job(app_, path_);
    if (!job.open(path) || !job.fits(store_.folder) || !job.extract(target, yieldsAfterExtraction))
      return false;
    noteRenamed(job, name + "\\");
  }
  return !fails(deleteEmbedded(folder, name));
}

Outcome AddonArchive::deleteEmbedded(const std::string& folder, const std::string& name) {
  FileSystem& files = app_.files();
  Outcome deleted;
  for (int attempt = 0; attempt < triesToDelete; ++attempt) {
    deleted = files.deleteFile(folder + name);
    if (deleted.ok()) break;
    files.setAttributes(withoutBackslash(folder), {}).skipped();
    files.setAttributes(folder + name, {}).skipped();
    app_.windows.yieldTimes(yieldsBetweenTries);
  }
  return deleted;
}

bool AddonArchive::stillThere() const { return presenceOf(app_.files(), path_) == Presence::there; }

void AddonArchive::finish(LeftOver& leftOver) {
  status("Cleaning temporary folder...");
  const WalkReport kept = leftOver.takeRest();
  if (kept.complete()) emptyWorkingFolder(app_);
  tellWalk(app_, kept, "kept of what was left over");
  status("");
}

void AddonArchive::giveUp() {
  // Beside a name that is taken the line goes on telling of which archive it was.
  const std::string remains = nameTaken_ ? app_.frmMain.lblStatus.caption.get() : std::string();
  if (stillThere()) {
    status("Cleaning temporary folder...");
    clearWorkingFolders(app_).skipped();
  } else if (unpacks_) {
    app_.windows.messageBox(
        {"\"" + path_ + "\" cannot be found any more. What was unpacked of it stays in \"" +
             app_.InstallTempDir + "\" and in the folders \"" + StagedFolder::name + "\" below \"" +
             store_.folder + "\" until the next installation, transfer or start of the program.",
         ui::BoxIcon::exclamation});
  }
  status(remains);
}

}  // namespace skv
