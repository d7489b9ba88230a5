// What happens to the Packages when their folder changes.
#pragma once

#include <string>

#include "core/app.h"

namespace skv {

// Offers to take the Packages along to App::PacksDir from the folder that the setting PacksMoveFrom
// names, if it holds some, and does it. Refuses, in a box, what would take other things along.
// Nothing is lost: of a name that stands newer in the new folder both files stay. What could not be
// moved is told. The setting goes when nothing is left to be done, or wanted.
void offerToMovePackages(App& app);
// The same at a start for a move that an earlier run has not finished: the program was killed, a
// disk was full or away. Asks nothing as long as the old folder cannot be reached or must not be
// moved.
void offerToFinishMove(App& app);

}  // namespace skv
