#include "scenery/scenery_guard.h"

#include "base/paths.h"
#include "core/addon_name.h"
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

}  // namespace skv
