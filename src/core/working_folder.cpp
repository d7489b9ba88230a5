#include "core/working_folder.h"

#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/folder_guard.h"
#include "core/remove_whole.h"

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

Outcome prepareWorkingFolder(App& app) {
  const Outcome stands = standsAsFolder(app);
  if (stands.ok()) removeAllIn(app, app.InstallTempDir).skipped();
  return stands;
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
