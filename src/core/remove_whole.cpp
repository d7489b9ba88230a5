#include "core/remove_whole.h"

#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/walktree.h"

namespace skv {

namespace {

Outcome removeFolder(FileSystem& files, const std::string& folder);

Outcome removeFile(FileSystem& files, const std::string& file) {
  files.setAttributes(file, {}).skipped();
  return files.deleteFile(file);
}

// `folder` ends in a backslash.
Outcome removeEntries(FileSystem& files, const std::string& folder) {
  const auto listing = files.list(folder, FileSystem::Entries::all);
  if (!listing.ok()) return listing.outcome();
  Outcome first;
  for (const FolderEntry& entry : listing.value()) {
    const std::string path = folder + entry.name;
    const Outcome removed = entry.folder ? removeFolder(files, path) : removeFile(files, path);
    if (!removed.ok() && first.ok()) first = removed;
  }
  return first;
}

Outcome removeFolder(FileSystem& files, const std::string& folder) {
  Outcome removed = files.removeFolder(folder);
  if (removed.ok() || files.isLink(folder)) return removed;
  Outcome emptied = removeEntries(files, folder + "\\");
  return emptied.ok() ? files.removeFolder(folder) : emptied;
}

// Keeps the window alive, and leaves little to do for what follows, which does not yield and finds
// what has failed here.
void walk(App& app, const std::string& folder) {
  WalkTree(app, folder, "", WalkDelete, true, OnStop::goOn).skipped();
}

}  // namespace

Outcome removeAllIn(App& app, const std::string& folder) {
  walk(app, folder);
  return removeEntries(app.files(), withBackslash(folder));
}

Outcome removeWhole(App& app, const std::string& folder) {
  const std::string path = withoutBackslash(folder);
  walk(app, path);
  Outcome removed = removeFolder(app.files(), path);
  if (!removed.ok() && presenceOf(app.files(), path) == Presence::absent) return {};
  return removed;
}

}  // namespace skv
