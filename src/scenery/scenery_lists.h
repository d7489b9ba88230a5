// Loading and saving the two lists of the Scenery Manager; see scenery_list_files.h for the files.
#pragma once

#include "core/app.h"

namespace skv {

// Fills lstScenery: from SKV_SC.lst when that holds for the present Scenery.cfg, else from
// Scenery.cfg itself. May yield. The top row is selected, but for a cache that was stale.
void LoadSceneryList(App& app);
// Writes SKV_SC.lst for the Scenery.cfg that the rows were made of. It is a cache: one that cannot
// be written is stale, and no failure is told. Without a Scenery.cfg nothing is written.
void SaveSceneryList(App& app);

// Fills lstInactScenery from SKV_SL.lst in SceneryLib, with the icons that tell where else a
// scenery is. A missing file is an empty library; one that cannot be read is told in a box.
void LoadSceneryLibList(App& app);
// Brings these icons up to date.
void showLibraryPlaces(App& app);
// False when the file could not be saved, which is told in a box; the rows and the old file stay.
// Only the content that the list was loaded from, or saved as, is written over.
bool SaveSceneryLibList(App& app);

}  // namespace skv
