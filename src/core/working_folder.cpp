#include "core/working_folder.h"

#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/folder_guard.h"
#include "core/walktree.h"

namespace skv {

namespace {

// Removes what a walk that deletes has left in the folder, whose path ends in a backslash.
void sweep(FileSystem& files, const std::string& folder) {
  const auto listing = files.list(folder, FileSystem::Entries::all);
  if (!listing.ok()) return;
  for (const FolderEntry& entry : listing.value()) {
    const std::string path = folder + entry.name;
    if (!entry.folder) {
      files.setAttributes(path, {}).skipped();
      files.deleteFile(path).skipped();
    } else if (!files.removeFolder(path).ok() && !files.isLink(path)) {
      sweep(files, path + "\\");
      files.removeFolder(path).skipped();
    }
  }
}

// The walk keeps the window alive, and leaves little to sweep.
void removeAllIn(App& app, const std::string& folder) {
  WalkTree(app, folder, "", WalkDelete, true, OnStop::goOn);
  sweep(app.files(), folder);
}

Outcome standsAsFolder(App& app) {
  const std::string& folder = app.InstallTempDir;
  if (Outcome may = mayBeEmptied(app, folder); !may.ok()) return may;
  const auto found = app.files().attributes(folder);
  if (!found.ok()) {
    if (presenceBy(found.outcome()) == Presence::unknown) return found.outcome();
    return app.files().makeFolder(folder);
  }
  if (found.value().folder) return {};
  return Outcome::withText(err::pathFileAccess,
                           "\"" + withoutBackslash(folder) + "\" is a file, and no folder.");
}

}  // namespace

Outcome prepareWorkingFolder(App& app) {
  const Outcome stands = standsAsFolder(app);
  if (stands.ok()) removeAllIn(app, app.InstallTempDir);
  return stands;
}

Outcome clearWorkingFolders(App& app) {
  if (Outcome stands = standsAsFolder(app); !stands.ok()) return stands;
  FileSystem& files = app.files();
  const auto listing = files.list(app.InstallTempDir, FileSystem::Entries::all);
  if (!listing.ok()) return listing.outcome();
  Outcome cleared;
  for (const FolderEntry& entry : listing.value()) {
    if (!entry.folder) continue;
    const std::string path = app.InstallTempDir + entry.name;
    if (!files.isLink(path)) removeAllIn(app, path + "\\");
    const Outcome removed = files.removeFolder(path);
    if (!removed.ok() && presenceOf(files, path) != Presence::absent && cleared.ok())
      cleared = removed;
  }
  return cleared;
}

void emptyWorkingFolder(App& app) {
  if (mayBeEmptied(app, app.InstallTempDir).ok()) removeAllIn(app, app.InstallTempDir);
}

}  // namespace skv
