// The two aircraft views: the simulator's aircraft and the Hangar's.
#pragma once

#include "core/app.h"

namespace skv {

// Show the view and load its three lists. Also called to reload a view.
void mnuViewFSAircraft_Click(App& app);
void mnuViewHangar_Click(App& app);

}  // namespace skv
