#include "core/staged_folder.h"

#include <utility>

#include "core/disk_queries.h"
#include "core/folder_guard.h"
#include "core/remove_whole.h"
#include "core/stores.h"

namespace skv {

StagedFolder::StagedFolder(App& app, std::string root, const std::string& addonName)
    : app_(app), root_(std::move(root)), path_(root_ + name), target_(root_ + addonName) {}

Outcome StagedFolder::clear(App& app, const std::string& root) {
  const std::string path = root + name;
  const auto found = app.files().attributes(path);
  if (!found.ok())
    return presenceBy(found.outcome()) == Presence::absent ? Outcome() : found.outcome();
  if (Outcome allowed = mayBeGivenUp(app, {path + "\\", root}); !allowed.ok()) return allowed;
  return removeWhole(app, path);
}

Outcome StagedFolder::make() {
  if (Outcome cleared = clear(); !cleared.ok()) return cleared;
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
  if (found.ok()) {
    report = WalkTree(app_, path_, target_, WalkMove, true);
    if (report.sourceMayGo()) clear().skipped();
    return report;
  }
  const bool absent = presenceBy(found.outcome()) == Presence::absent;
  report.note(absent ? settle() : found.outcome(), target_);
  return report;
}

Outcome StagedFolder::takeBack() {
  if (!settled_) return {};
  settled_ = false;
  return app_.files().rename(target_, path_);
}

void clearUnfinishedFolders(App& app) {
  const auto clear = [&app](const std::string& store, const std::string& root) {
    if (!store.empty()) StagedFolder::clear(app, root).skipped();
  };
  clear(app.FSRoot, aircraftRootOf(app.FSRoot));
  clear(app.FSRoot, app.FSRoot + addonScenery);
  clear(app.HangarDir, aircraftRootOf(app.HangarDir));
  clear(app.HangarDir, mainRootOf(app.HangarDir));
  clear(app.SceneryLib, sceneryRootOf(app.SceneryLib));
  clear(app.SceneryLib, mainRootOf(app.SceneryLib));
}

}  // namespace skv
