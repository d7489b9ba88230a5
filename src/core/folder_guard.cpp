#include "core/folder_guard.h"

#include <algorithm>

#include "base/paths.h"
#include "base/text.h"
#include "core/disk_queries.h"
#include "core/stores.h"

namespace skv {

namespace {

// "Folder\.\x\..\" names the same place as "Folder\", which a comparison of texts would not see.
bool hasDotElements(const std::string& path) {
  return std::ranges::any_of(split(path, '\\'), [](const std::string& element) {
    return !element.empty() && element.find_first_not_of(". ") == std::string::npos;
  });
}

// The path of something below a drive's root, by its plainest spelling.
bool isFull(const std::string& path) {
  return path.size() > 3 && path[1] == ':' && path[2] == '\\' &&
         path.find('/') == std::string::npos && path.find("\\\\") == std::string::npos &&
         !hasDotElements(path.substr(2));
}

Outcome refusal(const std::string& folder, const std::string& reason) {
  return Outcome::withText(err::pathFileAccess, "\"" + folder + "\" " + reason);
}

// Where a folder leads on disk, in upper case and with a slash at its end. A folder that is missing
// is where it would be made; "" when not even its drive is there.
Result<std::string> placeOf(const FileSystem& files, const std::string& folder) {
  const auto place = files.canonicalPath(folder);
  if (place.ok()) return upper(place.value());
  if (presenceOf(files, folder) != Presence::absent) return place.outcome();
  const std::string above = folderAbove(folder);
  auto placeAbove = above.empty() ? Result<std::string>(std::string()) : placeOf(files, above);
  if (!placeAbove.ok() || placeAbove.value().empty()) return placeAbove;
  return placeAbove.value() + upper(fileName(withoutBackslash(folder))) + "/";
}

bool leadsInto(const std::string& place, const std::string& inner) {
  return !inner.empty() && inner.starts_with(place);
}

// Without the working folder.
std::vector<std::string> storesOf(const App& app) {
  std::vector<std::string> kept{app.FSRoot,
                                aircraftRootOf(app.FSRoot),
                                app.HangarDir,
                                aircraftRootOf(app.HangarDir),
                                mainRootOf(app.HangarDir),
                                app.PacksDir,
                                app.PanelsDir,
                                app.FSRoot + addonScenery,
                                app.FSRoot + "Scenery\\",
                                app.SceneryLib,
                                sceneryRootOf(withBackslash(app.SceneryLib)),
                                mainRootOf(withBackslash(app.SceneryLib)),
                                app.SceneryPacksPath,
                                app.AppDir,
                                app.platform.environment.home};
  for (const char* shared : sharedFolders) kept.push_back(app.FSRoot + shared);
  return kept;
}

// Tells of folders whether they lie in the one in question.
class Judge {
 public:
  // `place`: where that one leads; "" when it is a link that is not followed.
  Judge(const App& app, const std::string& folder, std::string place)
      : files_(app.platform.files), folder_(folder), place_(std::move(place)) {}

  Outcome keeps(const std::string& one) {
    if (!isFull(one)) return {};
    const auto there = placeOf(files_, one);
    if (!there.ok()) return there.outcome();
    known_.emplace_back(upper(withBackslash(one)), there.value());
    if (!isOrHolds(folder_, one) && (place_.empty() || !leadsInto(place_, there.value())))
      return {};
    return refusal(folder_, upper(withBackslash(folder_)) == known_.back().first
                                ? "is a folder that has to stay."
                                : "is or holds \"" + one + "\".");
  }

  // Rows are many: by the places of the stores that keeps() has learned.
  Outcome keepsRow(const std::string& row) {
    if (!isFull(row)) return {};
    const std::string path = upper(withBackslash(row));
    bool goesAlong = path.starts_with(upper(withBackslash(folder_)));
    for (const auto& [store, place] : known_) {
      if (goesAlong || place_.empty()) break;
      if (place.empty() || !path.starts_with(store)) continue;
      std::string below = path.substr(store.size());
      std::ranges::replace(below, '\\', '/');
      goesAlong = (place + below).starts_with(place_);
    }
    if (!goesAlong) return {};
    return refusal(folder_, "is or holds the folder of another row, \"" + row + "\".");
  }

 private:
  const FileSystem& files_;
  const std::string& folder_;
  const std::string place_;
  std::vector<std::pair<std::string, std::string>> known_;  // path in upper case, place
};

Outcome holdsNothingKept(const App& app, const std::string& folder, const std::string& place,
                         const std::vector<std::string>& others = {}) {
  Judge judge(app, folder, place);
  for (const std::string& store : storesOf(app))
    if (Outcome kept = judge.keeps(store); !kept.ok()) return kept;
  if (folder != app.InstallTempDir)
    if (Outcome kept = judge.keeps(app.InstallTempDir); !kept.ok()) return kept;
  for (const std::string& other : others)
    if (Outcome kept = judge.keepsRow(other); !kept.ok()) return kept;
  return {};
}

Outcome cannotBeLookedAt(const std::string& folder, const Outcome& look) {
  return Outcome::withText(look.number(),
                           "\"" + folder + "\" cannot be looked at. " + look.description());
}

// Whether the folder is its store or lies in it, by path; and whether `led` to by that path does so
// on disk.
Outcome leadsIntoStore(const App& app, const FolderUse& use, const std::string& led) {
  if (!isFull(use.folder) || !isFull(use.store))
    return refusal(use.folder, "is no full path of a folder.");
  if (!isOrHolds(use.store, use.folder))
    return refusal(use.folder, "does not lie in \"" + use.store + "\".");
  const FileSystem& files = app.platform.files;
  const auto storePlace = placeOf(files, use.store);
  const auto place = placeOf(files, led);
  if (!storePlace.ok()) return cannotBeLookedAt(use.store, storePlace.outcome());
  if (!place.ok()) return cannotBeLookedAt(use.folder, place.outcome());
  if (!leadsInto(storePlace.value(), place.value()))
    return refusal(use.folder, "leads out of \"" + use.store + "\".");
  return {};
}

// Whether the folder lies strictly inside its store, as far as the folder above it.
Outcome liesInStore(const App& app, const FolderUse& use) {
  if (isOrHolds(use.folder, use.store))
    return refusal(use.folder, "does not lie in \"" + use.store + "\".");
  return leadsIntoStore(app, use, folderAbove(use.folder));
}

// A folder that may lie anywhere.
Outcome isNoStore(const App& app, const std::string& folder,
                  const std::vector<std::string>& others) {
  if (!isFull(folder)) return refusal(folder, "is the root of a drive, or no full path.");
  const auto place = placeOf(app.platform.files, folder);
  if (!place.ok()) return cannotBeLookedAt(folder, place.outcome());
  return holdsNothingKept(app, folder, place.value(), others);
}

}  // namespace

bool isRefusal(const Outcome& answer) {
  return answer.number() == err::pathFileAccess || answer.number() == err::badFileName;
}

bool isOrHolds(const std::string& folder, const std::string& inner) {
  return upper(withBackslash(inner)).starts_with(upper(withBackslash(folder)));
}

Outcome mayBeGivenUp(const App& app, const FolderUse& use) {
  Outcome lies = liesInStore(app, use);
  return lies.ok() ? mayBeDeleted(app, use.folder, use.others) : lies;
}

Outcome mayBeDeleted(const App& app, const std::string& folder,
                     const std::vector<std::string>& others) {
  // Of a link nothing goes but the link.
  if (isFull(folder) && app.platform.files.isLink(withoutBackslash(folder)))
    return holdsNothingKept(app, folder, {}, others);
  return isNoStore(app, folder, others);
}

Outcome mayBeFilled(const App& app, const FolderUse& use) {
  if (Outcome lies = liesInStore(app, use); !lies.ok()) return lies;
  const auto place = placeOf(app.platform.files, use.folder);
  if (!place.ok()) return cannotBeLookedAt(use.folder, place.outcome());
  return holdsNothingKept(app, use.folder, place.value(), use.others);
}

Outcome mayHoldOwnFile(const App& app, const FolderUse& use) {
  return leadsIntoStore(app, use, use.folder);
}

Outcome mayBeCopied(const App& app, const std::string& folder) {
  return isNoStore(app, folder, {});
}

Outcome mayBeEmptied(const App& app, const std::string& folder,
                     const std::vector<std::string>& others) {
  if (app.platform.files.isLink(withoutBackslash(folder)))
    return refusal(folder, "is a link to another folder.");
  return isNoStore(app, folder, others);
}

bool mayBeMadeUnasked(const App& app, const std::string& folder) {
  const FileSystem& files = app.platform.files;
  // The folders in a store that stands may be empty themselves.
  for (const std::string& store : {app.HangarDir, app.FSRoot})
    if (!store.empty() && isOrHolds(store, folder) && folderExists(files, store))
      return diskIsThere(files, store);
  const bool inSimulator = !app.FSRoot.empty() && isOrHolds(app.FSRoot, folder);
  return !inSimulator && diskIsThere(files, folder);
}

}  // namespace skv
