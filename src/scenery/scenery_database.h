// Scenery.cfg and the rows of lstScenery, which are the working copy of it: nothing reaches the
// simulator until SaveSceneryCfg runs.
#pragma once

#include <string>

#include "core/app.h"

namespace skv {

inline constexpr const char* sceneryCfgFile = "Scenery.cfg";
// The file as it stood before the program's first save.
inline constexpr const char* originalSceneryCfgFile = "Scenery.cfg.org";

// Replaces the rows of lstScenery, CfgCacheSize and CfgCleanOnExit from Scenery.cfg in FSRoot, the
// highest layer on top. A missing file has no rows. Yields once. False when the rows were not
// read: the file could not be, which is told in a box, or another load came in the yield.
bool LoadSceneryCfgList(App& app);

// Replaces Scenery.cfg from the rows, the bottom row as layer 1, and then SKV_SC.lst. The file as
// it was before the first save stays beside it. Asks before it drops what the rows don't know of:
// another program's changes, areas that were not reached. False when nothing was saved, which the
// user knows; the old file and the rows stay.
bool SaveSceneryCfg(App& app);

// Whether the rows, their order or their check marks differ from the file.
bool sceneriesDiffer(const App& app);
// The rows are those of the file from now on.
void noteSceneriesSaved(App& app);

}  // namespace skv
