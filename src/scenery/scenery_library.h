// The scenery library: what comes into it from a folder of the disk or from the simulator, and what
// goes. A scenery that arrives is staged (see staged_folder.h): a folder with a scenery's name is a
// whole scenery. Where something could not be copied the scenery does not arrive, and the user is
// told.
#pragma once

#include "core/app.h"

namespace skv {

// Takes the folder that is selected in the files browser into the library: as a scenery, or, by
// optTextures, as textures that the selected scenery keeps for the simulator's Texture folder. By
// optMove the folder is emptied when all of it has arrived.
void btnAddToSL_Click(App& app);

// Removes the selected row, and on the user's wish its files and its Package.
void btnSLDel_Click(App& app);

// Copies the simulator's add-on sceneries, the rows of lstScenery in their order.
void mnuFileImportSceneries_Click(App& app);
// Whether there is one.
bool hasAddonSceneries(const App& app);

}  // namespace skv
