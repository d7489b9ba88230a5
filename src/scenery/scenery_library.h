// The scenery library: what comes into it from a folder of the disk. A scenery that arrives is
// staged (see staged_folder.h): a folder with a scenery's name is a whole scenery. Where something
// could not be copied the scenery does not arrive, and the user is told.
#pragma once

#include "core/app.h"

namespace skv {

// Takes the folder that is selected in the files browser into the library: as a scenery, or, by
// optTextures, as textures that the selected scenery keeps for the simulator's Texture folder. By
// optMove the folder is emptied when all of it has arrived. A folder of the library that has no row
// gets one.
void btnAddToSL_Click(App& app);

}  // namespace skv
