// The one guard before a command deletes, empties, thins out or fills a folder that is named by a
// text which others wrote: a row's Folder, an alias, the name of an add-on in an archive.
//
// Each function answers success, or the reason in words for the user. Folders are judged by their
// paths and by where these lead on disk; what the disk does not tell is refused. What must not be
// lost: the stores of the program, the folders in them that hold all add-ons, the working folder,
// the program's own folder and the user's home.
#pragma once

#include <string>
#include <vector>

#include "core/app.h"

namespace skv {

struct FolderUse {
  // The folder in question, and the store in which it has to lie: full paths.
  std::string folder, store;
  // Folders of other rows, which it must not be and must not hold. Costs no call to the disk for
  // each; links below a store are not looked for here.
  std::vector<std::string> others = {};
};

// Whether the folder may be deleted, emptied or thinned out: it lies strictly inside its store and
// is not, and does not hold, what must not be lost. Where it is a link itself, only the link goes.
Outcome mayBeGivenUp(const App& app, const FolderUse& use);

// The same for a folder that may lie anywhere.
Outcome mayBeDeleted(const App& app, const std::string& folder,
                     const std::vector<std::string>& others);

// Whether files may be put into the folder. A link there is followed, so that it is judged by what
// it leads to; it may leave the store, as a user's own link to a larger disk does.
Outcome mayBeFilled(const App& app, const FolderUse& use);

// Whether a file that the program names itself may be written and deleted in the folder: that is
// its store or lies in it, and no link leads out of that.
Outcome mayHoldOwnFile(const App& app, const FolderUse& use);

// Whether a folder that may lie anywhere is one add-on and no store, so that it can be copied.
Outcome mayBeCopied(const App& app, const std::string& folder);

// The same for a folder that the user himself has named, or for the working folder, before it is
// emptied: it is no link, and neither is nor holds one of `others`, as above.
Outcome mayBeEmptied(const App& app, const std::string& folder,
                     const std::vector<std::string>& others = {});

// Whether a folder of the settings that is missing may be made without being asked for: neither
// where a disk that is away would show it, nor in the place of a simulator that is not there.
bool mayBeMadeUnasked(const App& app, const std::string& folder);

// Whether an answer of the functions above says that the folder has to stay as it is. Any other
// failure is that of a look at the disk, which may go well the next time.
bool isRefusal(const Outcome& answer);

// Whether `folder` is `inner`, or one of the folders above it. By path, without regard to case.
bool isOrHolds(const std::string& folder, const std::string& inner);

}  // namespace skv
