// What the library lists say while they have no rows: why, and what leads out of it.
#pragma once

#include "core/app.h"

namespace skv {

// Call after a load, which knows whether the files could be read. Costs one listing at most, of an
// empty list's aircraft root.
void fillEmptyTexts(App& app);

}  // namespace skv
