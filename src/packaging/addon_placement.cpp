#include "packaging/addon_placement.h"

#include <utility>

#include "base/paths.h"
#include "core/collect_files.h"
#include "core/disk_queries.h"
#include "core/folder_guard.h"
#include "core/messages.h"
#include "core/same_content.h"
#include "core/standing_addon.h"
#include "core/stores.h"

namespace skv {

AddonPlacement::AddonPlacement(App& app, const AddonStore& store, const std::string& name)
    : app_(app),
      store_(store),
      target_(store.addons + name),
      addon_(app, store.addons, name),
      main_(app, mainRootOf(store.folder), name),
      leftOver_(app, name) {}

bool AddonPlacement::makeFolders(std::span<const char* const> shared) {
  for (const std::string& root : {store_.addons, mainRootOf(store_.folder)})
    MakePath(app_.files(), root);
  for (StagedFolder* folder : {&addon_, &main_})
    if (ReportError(app_, folder->make())) return false;
  for (const char* name : shared)
    if (ReportError(app_, app_.files().makeFolder(main() + "\\" + name))) return false;
  return true;
}

std::string AddonPlacement::find(WalkCode finder, const std::string& where) {
  if (!goesOn()) return {};
  app_.FoundDir.clear();
  WalkReport search = WalkTree(app_, where, "", finder, true);
  search.done = 0;  // moved files alone count
  placed_ += search;
  return std::exchange(app_.FoundDir, {});
}

void AddonPlacement::move(const std::string& from, const std::string& to) {
  if (goesOn()) placed_ += WalkTree(app_, from, to, WalkMove, true);
}

void AddonPlacement::moveBehind(const std::string& from, const std::string& to) {
  if (!goesOn()) return;
  std::vector<std::string> names;
  placed_ += collectFiles(app_, from, names);
  for (const std::string& name : names) {
    if (!goesOn()) return;
    const std::string path = withBackslash(from) + name;
    placed_.note(keepOne(path, withBackslash(to) + name), path);
    app_.windows.yield();
  }
  move(from, to);
}

// Of the file in the working folder, and one that may stand at its place already.
Outcome AddonPlacement::keepOne(const std::string& path, const std::string& place) {
  FileSystem& files = app_.files();
  const auto first = files.attributes(place);
  if (!first.ok())
    return presenceBy(first.outcome()) == Presence::absent ? Outcome() : first.outcome();
  const auto same = sameContent(files, path, place);
  if (!same.ok()) return same.outcome();
  if (!same.value()) return leftOver_.take(path);
  files.setAttributes(path, {}).skipped();
  return files.deleteFile(path);
}

void AddonPlacement::placeShared(const char* text, WalkCode finder, const char* folder) {
  status(text);
  const std::string found = find(finder);
  if (found.empty()) return;
  move(found, main() + folder);
  app_.files().removeFolder(found).skipped();
}

bool AddonPlacement::settle() {
  FileSystem& files = app_.files();
  if (ReportError(app_, files.flushDisk(store_.folder))) return false;
  // Before the other folder, which may be merged with what stands and cannot be taken back then.
  if (ReportError(app_, makeRoom())) return false;
  if (!tellWalk(app_, main_.settleOrMerge(), "moved")) return false;
  Outcome settled = addon_.settle();
  if (settled.ok()) settled = files.flushDisk(store_.folder);
  return !ReportError(app_, settled);
}

// The user has been asked about what stands there. A whole add-on that has come meanwhile is
// refused; a folder without one is put aside, and nothing of it is lost.
Outcome AddonPlacement::makeRoom() {
  FileSystem& files = app_.files();
  const StandingAddon found =
      standingAddon(app_, store_.type, target_, store_.packages + fileName(target_) + packageEnd);
  if (found.standing == Standing::absent) return {};
  if (found.standing == Standing::unknown) return found.why;
  if (found.standing == Standing::whole) return Outcome::failure(err::fileExists, target_);
  if (Outcome may = mayBeGivenUp(app_, {target_ + "\\", store_.addons}); !may.ok()) return may;
  if (files.removeFolder(target_).ok()) return {};  // it was empty
  const std::string aside = freePath(files, store_.addons, fileName(target_));
  Outcome renamed = files.rename(target_, aside);
  if (renamed.ok()) aside_ = aside;
  return renamed;
}

void AddonPlacement::undo(bool archiveStands) {
  Outcome undone;
  for (StagedFolder* folder : {&addon_, &main_}) {
    Outcome removed = folder->takeBack();
    if (removed.ok() && archiveStands) removed = folder->clear();
    if (undone.ok()) undone = removed;
  }
  if (undone.ok() && !aside_.empty()) undone = app_.files().rename(aside_, target_);
  if (archiveStands) leftOver_.discard();
  if (!undone.ok())
    tellFailure(
        app_, "What the installation has put into \"" + store_.folder + "\" could not be removed.",
        undone);
}

}  // namespace skv
