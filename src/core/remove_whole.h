// Removing a folder with all that is in it, hidden and read-only entries included, which a walk
// leaves alone. Links are removed themselves, never gone through. A wish to stop does not end it.
//
// Whether the folder may go is asked before: see folder_guard.h.
#pragma once

#include <string>

#include "core/app.h"

namespace skv {

// What cannot be removed stays, and all else goes; answers the first failure. `folder` itself
// stays.
Outcome removeAllIn(App& app, const std::string& folder);

// The same, and then `folder` itself. One that is not there is a success.
Outcome removeWhole(App& app, const std::string& folder);

}  // namespace skv
