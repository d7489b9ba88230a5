// Deleting sceneries, of the simulator and of the library. Every question comes before the deed.
// The row goes when its files have gone, or when the user wanted them to stay; so a deletion that
// did not come to its end is finished by a second one.
#pragma once

#include "core/app.h"

namespace skv {

// Takes the selected area out of Scenery.cfg and then deletes its folder: a run that is killed
// leaves a folder that the simulator does not know, and no area without files. What cannot be
// deleted gets its area back. The simulator's own areas stay.
void btnFSScenDel_Click(App& app);

// Deletes the selected library scenery's files and its Package, as far as the user wants it, and
// then removes its row.
void btnSLDel_Click(App& app);

}  // namespace skv
