// Sceneries in the simulator: a copy of a library scenery comes in, an area goes.
#pragma once

#include "core/app.h"

namespace skv {

// Copies the selected library scenery into the simulator, from its Package when it has one, and
// gives it an area with the highest layer. The library keeps it. An area that could not get its
// files goes again, but for want of room: then it stands unsaved in the list.
void btnAddSLtoFS_Click(App& app);

// Removes the selected area with its folder. The simulator's own areas stay.
void btnFSScenDel_Click(App& app);

}  // namespace skv
