// A copy of a library scenery comes into the simulator.
#pragma once

#include "core/app.h"

namespace skv {

// Copies the selected library scenery into the simulator, from its Package when it has one, and
// gives it an area with the number of areas as its layer, the highest one where layers have no
// gaps. The library keeps it. Asks first whether one that has an area already gets a second one. An
// area that could not get its files goes again, but for want of room: then it stands unsaved in the
// list, and the next try is for that one.
void btnAddSLtoFS_Click(App& app);

}  // namespace skv
