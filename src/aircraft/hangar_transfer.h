// The transfer of an aircraft between the simulator and the Hangar, always a copy.
//
// The Hangar keeps an aircraft's own folder and the files that it adds to the simulator's shared
// folders apart:
//
//   Aircraft\b737\...          the aircraft's folder, whole
//   Main\b737\Gauges\...       what goes to the simulator's Gauges; likewise Sound, Texture,
//   Effects
//
// A Package holds the same layout without the aircraft's name: Aircraft\..., Main\Gauges\...
#pragma once

#include "core/app.h"

namespace skv {

// Carries the selected aircraft in the direction that the button's caption tells.
void btnHangar_Click(App& app);

}  // namespace skv
