#include "packaging/staged_folder.h"

#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/folder_guard.h"

namespace skv {

namespace {

// Removes a folder with all that is in it, hidden entries too; of a link only the link.
Outcome removeWhole(FileSystem& files, const std::string& folder) {
  if (!files.isLink(folder)) {
    const auto listing = files.list(folder, FileSystem::Entries::all);
    if (!listing.ok()) return listing.outcome();
    for (const FolderEntry& entry : listing.value()) {
      const std::string path = folder + "\\" + entry.name;
      if (!entry.folder) files.setAttributes(path, {}).skipped();
      Outcome removed = entry.folder ? removeWhole(files, path) : files.deleteFile(path);
      if (!removed.ok()) return removed;
    }
  }
  return files.removeFolder(folder);
}

}  // namespace

Outcome StagedFolder::clear() {
  FileSystem& files = app_.files();
  const auto found = files.attributes(path_);
  if (!found.ok())
    return presenceBy(found.outcome()) == Presence::absent ? Outcome() : found.outcome();
  if (Outcome allowed = mayBeGivenUp(app_, {path_ + "\\", root_}); !allowed.ok()) return allowed;
  // The walk keeps the window alive, and leaves little to do.
  WalkTree(app_, path_, "", WalkDelete, true, OnStop::goOn);
  return removeWhole(files, path_);
}

Outcome StagedFolder::make() {
  if (Outcome cleared = clear(); !cleared.ok()) return cleared;
  MakePath(app_.files(), root_);
  return app_.files().makeFolder(path_);
}

Outcome StagedFolder::settle() {
  Outcome renamed = app_.files().rename(path_, target_);
  settled_ = renamed.ok();
  return renamed;
}

WalkReport StagedFolder::settleOrMerge() {
  WalkReport report;
  const auto found = app_.files().attributes(target_);
  if (found.ok()) return WalkTree(app_, path_, target_, WalkMove, true);
  const Outcome settled =
      presenceBy(found.outcome()) == Presence::absent ? settle() : found.outcome();
  if (!settled.ok()) report = {.failed = 1, .first = settled, .where = target_};
  return report;
}

Outcome StagedFolder::takeBack() {
  if (!settled_) return {};
  settled_ = false;
  return app_.files().rename(target_, path_);
}

}  // namespace skv
