#include "core/working_folder.h"

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

}  // namespace

void clearWorkingFolders(App& app) {
  FileSystem& files = app.files();
  const auto listing = files.list(app.InstallTempDir, FileSystem::Entries::all);
  if (!listing.ok()) return;
  for (const FolderEntry& entry : listing.value()) {
    if (!entry.folder) continue;
    const std::string path = app.InstallTempDir + entry.name;
    // The walk keeps the window alive, and leaves little to sweep.
    WalkTree(app, path, "", WalkDelete, true);
    if (!files.isLink(path)) sweep(files, path + "\\");
    files.removeFolder(path).skipped();
  }
  app.error.clear();
}

void emptyWorkingFolder(App& app) {
  WalkTree(app, app.InstallTempDir, "", WalkDelete, true);
  sweep(app.files(), app.InstallTempDir);
  // A folder that the walk had to leave is no failure of the job.
  app.error.clear();
}

}  // namespace skv
