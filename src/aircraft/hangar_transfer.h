// The transfer of an aircraft between the simulator and the Hangar, always a copy.
//
// The Hangar keeps an aircraft's own folder and the files that it adds to the simulator's shared
// folders apart:
//
//   Aircraft\b737\...          the aircraft's folder, whole
//   Main\b737\Gauges\...       what goes to the simulator's Gauges, and likewise to its other
//                              shared folders
//
// A Package holds the same layout without the aircraft's name: Aircraft\..., Main\Gauges\...
//
// A new aircraft is copied into a StagedFolder. The line in the other view's list and the place
// icon come after that.
#pragma once

#include "core/app.h"

namespace skv {

// Carries the selected aircraft in the direction that the button's caption tells. A transfer that
// has failed, or was killed, is finished by the next one.
void btnHangar_Click(App& app);

}  // namespace skv
