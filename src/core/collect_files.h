// The files of a folder as a list of their own.
#pragma once

#include <string>
#include <vector>

#include "core/walktree.h"

namespace skv {

// Fills `files` with the paths of the folder's files, relative to it, in walking order. The
// answer's `done` is 0: nothing was transferred. Leaves PackFileList as it was; yields.
WalkReport collectFiles(App& app, const std::string& folder, std::vector<std::string>& files,
                        OnStop onStop = OnStop::end);

}  // namespace skv
