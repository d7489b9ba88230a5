// Which folders of a scenery a command may fill or give up: "Folder:" and so its last element were
// written by others. See folder_guard.h.
#pragma once

#include <string>

#include "core/folder_guard.h"

namespace skv {

// Whether the name of a scenery can be that of a folder in the library.
Outcome leafMayBeUsed(const App& app, const std::string& leaf);

// The folder of a row of lstScenery in the simulator, with those of all other rows.
FolderUse simulatorFolder(const App& app, int row);

// The folder of a row of lstInactScenery below `root` of the library, with those of all other rows.
FolderUse libraryFolder(const App& app, const std::string& root, int row);

}  // namespace skv
