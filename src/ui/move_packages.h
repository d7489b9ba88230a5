// What happens to the Packages when their folder changes.
#pragma once

#include <string>

#include "core/app.h"

namespace skv {

// Offers to take the Packages along from `from`, which holds some, to App::PacksDir, and does it.
// Refuses, in a box, what would take other things along. Nothing is lost: of a name that stands
// newer in the new folder both files stay. What could not be moved is told.
void offerToMovePackages(App& app, const std::string& from);

}  // namespace skv
