#include "aircraft/landing_folder.h"

#include <utility>

#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/folder_guard.h"
#include "core/walktree.h"

namespace skv {

namespace {
constexpr const char* stageName = "~SKVTransfer";
}

LandingFolder::LandingFolder(App& app, std::string aircraftRoot, const std::string& folderName)
    : app_(app), root_(std::move(aircraftRoot)), target_(root_ + folderName + "\\") {}

LandingFolder::~LandingFolder() {
  if (staged_) clear(app_, root_).skipped();
}

Outcome LandingFolder::open() {
  if (Outcome may = mayBeFilled(app_, {target_, root_}); !may.ok()) return may;
  if (Outcome cleared = clear(app_, root_); !cleared.ok()) return cleared;
  FileSystem& files = app_.files();
  const auto there = files.attributes(target_);
  if (there.ok()) {
    if (!there.value().folder) return Outcome::failure(err::pathFileAccess, target_);
    path_ = target_;
    return {};
  }
  if (presenceBy(there.outcome()) == Presence::unknown) return there.outcome();
  path_ = root_ + stageName + "\\";
  const Outcome made = files.makeFolder(withoutBackslash(path_));
  staged_ = made.ok();
  return made;
}

Outcome LandingFolder::settle() {
  FileSystem& files = app_.files();
  if (Outcome flushed = files.flushDisk(path_); !flushed.ok() || !staged_) return flushed;
  if (Outcome named = files.rename(withoutBackslash(path_), withoutBackslash(target_)); !named.ok())
    return named;
  staged_ = false;
  path_ = target_;
  return files.flushDisk(path_);
}

Outcome LandingFolder::clear(App& app, const std::string& aircraftRoot) {
  FileSystem& files = app.files();
  const std::string stage = aircraftRoot + stageName;
  const auto there = files.attributes(stage);
  if (!there.ok())
    return presenceBy(there.outcome()) == Presence::absent ? Outcome() : there.outcome();
  if (Outcome may = mayBeGivenUp(app, {stage + "\\", aircraftRoot}); !may.ok()) return may;
  const WalkReport emptied = WalkTree(app, stage, "", WalkDelete, true, OnStop::goOn);
  return emptied.complete() ? files.removeFolder(stage) : emptied.first;
}

}  // namespace skv
