#include "core/folder_guard.h"

#include <algorithm>

#include "base/paths.h"
#include "core/disk_queries.h"

namespace skv {

namespace {

// "Folder\.\x\..\" names the same place as "Folder\", which a comparison of texts would not see.
bool hasDotElements(const std::string& path) {
  return std::ranges::any_of(split(path, '\\'), [](const std::string& element) {
    return !element.empty() && element.find_first_not_of(". ") == std::string::npos;
  });
}

bool isFull(const std::string& path) {
  return path.size() > 3 && path[1] == ':' && path[2] == '\\' &&
         path.find('/') == std::string::npos && path.find("\\\\") == std::string::npos &&
         !hasDotElements(path.substr(2));
}

Outcome refusal(const std::string& folder, const char* reason) {
  return Outcome::withText(err::pathFileAccess, "\"" + folder + "\" " + reason);
}

// Where the folder leads on disk, as a path that ends in a slash; "" when the disk does not tell.
std::string placeOf(const App& app, const std::string& folder) {
  const FileSystem& files = app.platform.files;
  if (presenceOf(files, folder) != Presence::absent) return files.canonicalPath(folder).valueOr({});
  const std::string path = withoutBackslash(folder);
  const std::size_t end = path.rfind('\\');
  const auto above = files.canonicalPath(path.substr(0, end + 1));
  return above.ok() ? above.value() + path.substr(end + 1) + "/" : std::string();
}

bool leadsTo(const std::string& place, const std::string& inner) {
  return !inner.empty() && inner.starts_with(place);
}

// The second half of both guards: what may not go along with the folder. `place` is where it leads
// on disk.
Outcome keepsClear(const App& app, const std::string& folder, const std::string& place,
                   const std::vector<std::string>& others) {
  // Of a link only the link goes.
  const bool link = app.platform.files.isLink(withoutBackslash(folder));
  const auto goesAlong = [&](const std::string& one) {
    return isFull(one) && (isOrHolds(folder, one) || (!link && leadsTo(place, placeOf(app, one))));
  };
  for (const std::string& one :
       {app.FSRoot, app.HangarDir, app.PacksDir, app.PanelsDir, app.SceneryLib,
        app.SceneryPacksPath, app.InstallTempDir, app.FSRoot + "aircraft\\",
        app.HangarDir + "aircraft\\", app.HangarDir + "Main\\", app.SceneryLib + "Scenery\\",
        app.SceneryLib + "Main\\", app.AppDir, app.platform.environment.home})
    if (goesAlong(one)) return refusal(folder, ("is or holds \"" + one + "\".").c_str());
  for (const std::string& other : others)
    if (goesAlong(other))
      return refusal(folder, ("is or holds the folder of another row, \"" + other + "\".").c_str());
  return {};
}

}  // namespace

bool isOrHolds(const std::string& folder, const std::string& inner) {
  return upper(withBackslash(inner)).starts_with(upper(withBackslash(folder)));
}

Outcome mayBeGivenUp(const App& app, const FolderUse& use) {
  const std::string& folder = use.folder;
  if (!isFull(folder) || !isFull(use.store)) return refusal(folder, "is no full path of a folder.");
  if (!isOrHolds(use.store, folder) || isOrHolds(folder, use.store))
    return refusal(folder, ("does not lie in \"" + use.store + "\".").c_str());
  // The folder may be a link: that leads where it will, and only the link is taken away.
  const std::string above = folder.substr(0, withoutBackslash(folder).rfind('\\') + 1);
  const std::string place = placeOf(app, folder), placeAbove = placeOf(app, above),
                    storePlace = placeOf(app, use.store);
  if (place.empty() || placeAbove.empty() || storePlace.empty())
    return refusal(folder, "cannot be looked at.");
  if (!placeAbove.starts_with(storePlace))
    return refusal(folder, ("leads out of \"" + use.store + "\".").c_str());
  return keepsClear(app, folder, place, use.others);
}

Outcome mayBeEmptied(const App& app, const std::string& folder) {
  if (!isFull(folder)) return refusal(folder, "is the root of a drive, or no full path.");
  const std::string place = placeOf(app, folder);
  if (place.empty()) return refusal(folder, "cannot be looked at.");
  if (app.platform.files.isLink(withoutBackslash(folder)))
    return refusal(folder, "is a link to another folder.");
  return keepsClear(app, folder, place, {});
}

}  // namespace skv
