#include "aircraft/place_mask.h"

#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/folder_guard.h"
#include "core/stores.h"

namespace skv {

namespace {

std::unordered_set<std::string> namesIn(App& app, const std::string& folder, bool folders) {
  std::unordered_set<std::string> names;
  const auto listing = app.files().list(folder, FileSystem::Entries::all);
  if (!listing.ok()) return names;
  for (const FolderEntry& entry : listing.value())
    if (entry.folder == folders) names.insert(upper(entry.name));
  return names;
}

// Names that the disk may spell otherwise than the row does.
bool needsTheDisk(const std::string& name) {
  return name.ends_with('.') || name.ends_with(' ') || name.find('/') != std::string::npos;
}

}  // namespace

int PlaceMask(App& app, const std::string& folderName) {
  if (!isElementName(folderName)) return 0;
  const FileSystem& files = app.files();
  int mask = 0;
  if (folderExists(files, aircraftRootOf(app.FSRoot) + folderName)) mask |= inSimulator;
  const auto package = files.attributes(app.PacksDir + folderName + packageEnd);
  if (package.ok() && !package.value().folder) mask |= inPackage;
  if (folderExists(files, aircraftRootOf(app.HangarDir) + folderName)) mask |= inHangar;
  return mask;
}

PlaceIndex::PlaceIndex(App& app)
    : app_(app),
      simulator_(namesIn(app, aircraftRootOf(app.FSRoot), true)),
      packages_(namesIn(app, app.PacksDir, false)),
      hangar_(namesIn(app, aircraftRootOf(app.HangarDir), true)) {}

int PlaceIndex::mask(const std::string& folderName) const {
  if (needsTheDisk(folderName)) return PlaceMask(app_, folderName);
  const std::string name = upper(folderName);
  return (simulator_.contains(name) ? inSimulator : 0) |
         (packages_.contains(name + upper(packageEnd)) ? inPackage : 0) |
         (hangar_.contains(name) ? inHangar : 0);
}

int rowMask(App& app, int row) {
  const auto& list = app.frmMain.lstAircraft;
  const int icon = list.smallIcon(row);
  return icon > 0 ? icon - 1 : PlaceMask(app, FolderName(list.subItem(row, 1)));
}

std::string namesakeInHangar(const App& app, const std::string& folder) {
  const std::string own = withBackslash(folder), root = aircraftRootOf(app.HangarDir);
  const std::string name = FolderName(own);
  const auto& list = app.frmMain.lstAircraft;
  for (int row = 1; row <= list.count(); ++row) {
    std::string other = withBackslash(list.subItem(row, 1));
    if (equalsIgnoringCase(FolderName(other), name) && !equalsIgnoringCase(other, own) &&
        isOrHolds(root, other))
      return other;
  }
  return {};
}

}  // namespace skv
