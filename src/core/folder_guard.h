// The one guard before a command deletes, empties, thins out or fills a folder that is named by a
// text which others wrote: a row's Folder, an alias, the name of an add-on in an archive.
#pragma once

#include <string>

#include "core/app.h"

namespace skv {

struct FolderUse {
  // The folder in question, and the store in which it has to lie: with trailing backslashes.
  std::string folder, store;
  // Folders of other rows, which it must not be and must not hold.
  std::vector<std::string> others = {};
};

// Success when the folder lies strictly inside its store, by its path and by where it leads on
// disk, and is not, and does not hold, a store of the program, a drive's root, the user's home, the
// working folder or another row's folder. Otherwise the reason, in words for the user. What the
// disk does not tell is refused.
Outcome mayBeGivenUp(const App& app, const FolderUse& use);

// The same for a folder that the user himself has named and that may lie anywhere: it is no link
// and no drive's root, and holds nothing of the above.
Outcome mayBeEmptied(const App& app, const std::string& folder);

// Whether `folder` is `inner`, or one of the folders above it. By path, without regard to case.
bool isOrHolds(const std::string& folder, const std::string& inner);

}  // namespace skv
