// What stands under an add-on's name in the simulator or in a store of ours.
//
// A folder's name alone says nothing: the folder may be empty, hold a readme, or be what a deletion
// that failed half way has left. Who takes a folder of that name for the add-on, and gives up
// another copy of it, asks here.
#pragma once

#include <string>

#include "core/app.h"

namespace skv {

enum class AddonType { aircraft, scenery };

enum class Standing {
  absent,    // nothing has the name
  whole,     // an add-on of the type
  notWhole,  // a folder without one
  unknown,   // the disk does not tell, or what has the name is no folder of its own
};

struct StandingAddon {
  Standing standing = Standing::absent;
  Outcome why = {};  // of unknown: a failure for the user
};

// An aircraft is a folder with an "aircraft.cfg" directly in it. A scenery is one with a ".bgl" at
// any depth, or with a file in its folder "Scenery" or "Texture". `package`: the path of the
// add-on's Package, "" for none; beside one a thinned out scenery is whole.
//
// Links, files, and folders that hold aircraft further down only are unknown: neither the add-on
// nor free for it. Costs the listings of the folder until something is found, and yields.
StandingAddon standingAddon(App& app, AddonType type, const std::string& folder,
                            const std::string& package = {});

}  // namespace skv
