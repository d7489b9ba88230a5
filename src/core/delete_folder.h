// Deleting the folder of an add-on, which may be given up (see folder_guard.h).
#pragma once

#include <string>

#include "core/walktree.h"

namespace skv {

// Empties the folder and removes it. One that is a link is removed itself. What is not there is no
// failure. Ends early when the user wants it.
WalkReport deleteFolder(App& app, const std::string& folder);

// Offers to delete the Package of an add-on whose folders have gone, when there is one. `report`
// learns of a failure, also of one to tell whether there is.
void offerToDeletePackage(App& app, const std::string& package, WalkReport& report);

}  // namespace skv
