#include "packaging/addon_placement.h"

#include <utility>

#include "core/disk_queries.h"
#include "core/messages.h"
#include "core/stores.h"

namespace skv {

AddonPlacement::AddonPlacement(App& app, const AddonStore& store, const std::string& name)
    : app_(app),
      store_(store),
      addon_(app, store.addons, name),
      main_(app, mainRootOf(store.folder), name) {}

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
  if (!tellWalk(app_, main_.settleOrMerge(), "moved")) return false;
  Outcome settled = addon_.settle();
  if (settled.ok()) settled = files.flushDisk(store_.folder);
  return !ReportError(app_, settled);
}

void AddonPlacement::undo(bool archiveStands) {
  Outcome undone;
  for (StagedFolder* folder : {&addon_, &main_}) {
    Outcome removed = folder->takeBack();
    if (removed.ok() && archiveStands) removed = folder->clear();
    if (undone.ok()) undone = removed;
  }
  if (!undone.ok())
    tellFailure(
        app_, "What the installation has put into \"" + store_.folder + "\" could not be removed.",
        undone);
}

}  // namespace skv
