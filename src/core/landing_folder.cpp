#include "core/landing_folder.h"

#include "core/disk_queries.h"
#include "core/folder_guard.h"

namespace skv {

LandingFolder::LandingFolder(App& app, const std::string& root, const std::string& folderName)
    : app_(app), root_(root), target_(root_ + folderName + "\\"), stage_(app, root_, folderName) {}

LandingFolder::~LandingFolder() {
  if (staged_) stage_.clear().skipped();
}

Outcome LandingFolder::open() {
  if (Outcome may = mayBeFilled(app_, {target_, root_}); !may.ok()) return may;
  if (Outcome cleared = stage_.clear(); !cleared.ok()) return cleared;
  const auto there = app_.files().attributes(target_);
  if (there.ok())
    return there.value().folder ? Outcome() : Outcome::failure(err::pathFileAccess, target_);
  if (presenceBy(there.outcome()) == Presence::unknown) return there.outcome();
  Outcome made = stage_.make();
  staged_ = made.ok();
  return made;
}

Outcome LandingFolder::settle() {
  FileSystem& files = app_.files();
  if (Outcome flushed = files.flushDisk(path()); !flushed.ok() || !staged_) return flushed;
  if (Outcome named = stage_.settle(); !named.ok()) return named;
  staged_ = false;
  return files.flushDisk(path());
}

}  // namespace skv
