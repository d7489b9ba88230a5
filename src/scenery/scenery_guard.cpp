#include "scenery/scenery_guard.h"

#include "base/paths.h"
#include "core/addon_name.h"
#include "core/disk_queries.h"
#include "core/remove_whole.h"
#include "core/staged_folder.h"
#include "core/stores.h"
#include "scenery/scenery_places.h"
#include "scenery/scenery_row.h"

namespace skv {

Outcome leafMayBeUsed(const App& app, const std::string& leaf) {
  std::string fault = isElementName(leaf)
                          ? faultOfAddonName(app, sceneryRootOf(app.SceneryLib), leaf)
                          : "It names no folder of its own.";
  if (fault.empty()) return {};
  return Outcome::withText(err::badFileName,
                           "\"" + leaf + "\" cannot be the name of a scenery's folder. " + fault);
}

FolderUse simulatorFolder(const App& app, int row) {
  const auto& list = app.frmMain.lstScenery;
  const auto folderOf = [&](int one) {
    return withBackslash(sceneryFolder(app, list.subItem(one, sceneryColumn::Folder)));
  };
  FolderUse use{folderOf(row), app.FSRoot};
  for (int one = 1; one <= list.count(); ++one)
    if (one != row) use.others.push_back(folderOf(one));
  return use;
}

FolderUse libraryFolder(const App& app, const std::string& root, int row) {
  const auto& list = app.frmMain.lstInactScenery;
  const auto folderOf = [&](int one) {
    return root + leafOf(list.subItem(one, sceneryColumn::Folder)) + "\\";
  };
  FolderUse use{folderOf(row), root};
  for (int one = 1; one <= list.count(); ++one)
    if (one != row) use.others.push_back(folderOf(one));
  return use;
}

WalkReport deleteSceneryFolder(App& app, const std::string& folder) {
  const std::string path = withoutBackslash(folder);
  WalkReport report;
  const auto found = app.files().attributes(path);
  if (!found.ok() && presenceBy(found.outcome()) == Presence::absent) return report;
  report = WalkTree(app, folder, "", WalkDelete, true);
  // Hidden entries, which a walk leaves alone.
  if (report.complete()) report.note(removeWhole(app, path), path);
  return report;
}

}  // namespace skv
