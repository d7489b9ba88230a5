// Scenery.cfg and the rows of lstScenery, which are the working copy of it: nothing reaches the
// simulator until SaveSceneryCfg runs.
#pragma once

#include <optional>

#include "core/app.h"
#include "scenery/scenery_row.h"

namespace skv {

inline constexpr const char* sceneryCfgFile = "Scenery.cfg";
// The file as it stood before the program's first save.
inline constexpr const char* originalSceneryCfgFile = "Scenery.cfg.org";

// Replaces the rows of lstScenery, CfgCacheSize and CfgCleanOnExit from Scenery.cfg in FSRoot, the
// highest layer on top. A missing file has no rows. Yields once. False when the rows were not
// read: the file could not be, which is told in a box, or another load came in the yield.
bool LoadSceneryCfgList(App& app);

// Looks for the areas that the rows don't know of, where these came from a cache. A file that
// cannot be read now is looked at again by a save.
void findUnreachedAreas(App& app);
// A box that names them.
void lblSceneryUnreached_Click(App& app);

// Scenery.cfg as it may be replaced.
struct SceneryCfgLeave {
  std::optional<FileState> state;  // none: it is missing
};
// To be asked before anything else of a command that ends in a save is done: whether what the rows
// don't know of may be dropped, another program's changes and areas that were not reached. None
// when the file is to stay, which the user knows.
std::optional<SceneryCfgLeave> mayReplaceSceneryCfg(App& app);

// Replaces Scenery.cfg from the rows, the bottom row as layer 1, and then SKV_SC.lst. The file as
// it was before the first save stays beside it. The row `without`, if there is one, is removed when
// it is out of the file. False when nothing was saved, which is told; the old file and the rows
// stay. So it is where the file has changed since the leave was given.
bool SaveSceneryCfg(App& app, const SceneryCfgLeave& leave, ui::ListView::RowId without = 0);
// The same with the leave of this moment.
bool SaveSceneryCfg(App& app);

// Whether the file, or its original, says that the simulator cannot do without the area of a row. A
// save does not carry that word over.
bool isRequiredArea(const App& app, const SceneryRow& row);

// Whether the rows, their order or their check marks differ from the file.
bool sceneriesDiffer(const App& app);
// The rows are those of the file from now on.
void noteSceneriesSaved(App& app);

}  // namespace skv
