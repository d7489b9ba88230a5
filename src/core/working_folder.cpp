#include "core/working_folder.h"

#include <algorithm>
#include <utility>

#include "base/paths.h"
#include "base/text.h"
#include "core/disk_queries.h"
#include "core/folder_guard.h"
#include "core/remove_whole.h"
#include "core/stores.h"

namespace skv {

namespace {

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

Result<std::vector<std::string>> prepareWorkingFolder(App& app) {
  if (Outcome stands = standsAsFolder(app); !stands.ok()) return stands;
  const auto listing = app.files().list(app.InstallTempDir);
  if (!listing.ok()) return listing.outcome();
  std::vector<std::string> archives;
  for (const FolderEntry& entry : listing.value()) {
    if (entry.folder || !lowerAscii(entry.name).ends_with(packageEnd)) continue;
    auto kept = keepArchive(app, app.InstallTempDir + entry.name);
    if (!kept.ok()) return kept.outcome();
    archives.push_back(std::move(kept).value());
  }
  removeAllIn(app, app.InstallTempDir).skipped();
  return archives;
}

Result<std::string> keepArchive(App& app, const std::string& path) {
  const std::string place = freePath(app.files(), app.TempDir, fileName(path));
  // Not a move, which refuses a read-only file.
  if (Outcome renamed = app.files().rename(path, place); !renamed.ok()) return renamed;
  return place;
}

Outcome clearWorkingFolders(App& app) {
  if (Outcome stands = standsAsFolder(app); !stands.ok()) return stands;
  const auto listing = app.files().list(app.InstallTempDir, FileSystem::Entries::all);
  if (!listing.ok()) return listing.outcome();
  Outcome cleared;
  for (const FolderEntry& entry : listing.value()) {
    if (!entry.folder) continue;
    const Outcome removed = removeWhole(app, app.InstallTempDir + entry.name);
    if (!removed.ok() && cleared.ok()) cleared = removed;
  }
  return cleared;
}

void emptyWorkingFolder(App& app) {
  if (mayBeEmptied(app, app.InstallTempDir).ok()) removeAllIn(app, app.InstallTempDir).skipped();
}

}  // namespace skv
