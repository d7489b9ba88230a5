// Deleting the files of an add-on, which may be given up (see folder_guard.h).
//
// A folder first gets the name of a StagedFolder in the root of its store, so that no half add-on
// stands under its own name when the run is killed: the next start removes what is left. What
// cannot go gets the old name back, and so does all that a stop has left.
#pragma once

#include <string>
#include <vector>

#include "core/folder_guard.h"
#include "core/walktree.h"

namespace skv {

// Empties the folder and removes it; one that is a link is removed itself. `root` ends in a
// backslash and is a root of StagedFolders; a folder elsewhere goes in its place. Ends early when
// the user wants it.
//
// complete() says that nothing stands there any more, which is so for a folder that was not there.
// After anything else the row that names it has to stay, for a second try.
WalkReport deleteFolder(App& app, const std::string& folder, const std::string& root);

// What of an add-on is to go from a store: its folders, each in a root as above, and its Package,
// "" when that stays.
struct AddonFiles {
  std::vector<FolderUse> folders;
  std::string package;
};

// Deletes them one after the other, until one does not go. complete() as above.
WalkReport deleteAddon(App& app, const AddonFiles& files);

// Asks whether the Package of an add-on goes with its folders, when there is one: to be asked
// before they go. No says that it stays or is not there, Cancel that nothing is to be done: the
// user wants it, or the disk does not tell, which was told.
ui::Answer packageGoesToo(App& app, const std::string& package);

}  // namespace skv
