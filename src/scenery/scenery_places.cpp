#include "scenery/scenery_places.h"

#include "base/paths.h"
#include "base/text.h"
#include "core/disk_queries.h"
#include "core/stores.h"
#include "scenery/scenery_row.h"

namespace skv {

namespace {

// Names that the disk may spell otherwise than a listing does.
bool needsTheDisk(const std::string& path) {
  const std::string name = fileName(path);
  return name.empty() || name.ends_with('.') || name.ends_with(' ') ||
         path.find('/') != std::string::npos;
}

}  // namespace

std::string sceneryFolder(const App& app, const std::string& Folder) {
  const bool full = Folder.size() > 2 && Folder[1] == ':' && Folder[2] == '\\';
  return full ? Folder : app.FSRoot + Folder;
}

int SceneryPlaces::icon(const std::string& Folder) {
  const std::string leaf = leafOf(Folder);
  int icon = 1;
  if (!leaf.empty() && stands(app_.SceneryPacksPath + leaf + packageEnd, true)) icon += 2;
  if (stands(sceneryFolder(app_, Folder), false)) icon += 1;
  return icon;
}

bool SceneryPlaces::stands(const std::string& path, bool wantsFile) {
  const auto asksTheDisk = [&] {
    const auto found = app_.files().attributes(path);
    return found.ok() && !(wantsFile && found.value().folder);
  };
  if (needsTheDisk(path)) return asksTheDisk();
  const std::string folder = folderAbove(path);
  const auto [place, isNew] = folders_.try_emplace(upper(folder));
  if (isNew) {
    const auto listing = app_.files().list(folder, FileSystem::Entries::all);
    for (const FolderEntry& entry : listing.valueOr({}))
      place->second.emplace(upper(entry.name), entry.folder);
  }
  const auto name = place->second.find(upper(fileName(path)));
  return name != place->second.end() && !(wantsFile && name->second);
}

}  // namespace skv
