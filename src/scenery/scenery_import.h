// File, Import, Sceneries: the simulator's add-on sceneries come into the library.
#pragma once

#include "core/app.h"

namespace skv {

// Copies them, the rows of lstScenery in their order. Asks first whether those that the library
// lists already are to be listed once more; without that they only get the files that it lacks. One
// that could not be read or copied is not listed.
void mnuFileImportSceneries_Click(App& app);
// Whether there is one.
bool hasAddonSceneries(const App& app);

}  // namespace skv
