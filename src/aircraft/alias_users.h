// Which aircraft use the panel or the sound of another one.
#pragma once

#include <string>
#include <vector>

#include "core/app.h"

namespace skv {

// The names of the rows of lstAircraft that have an alias into `folder`, an aircraft's folder below
// the aircraft root. One pass over the folders of the view; yields.
std::vector<std::string> aliasUsers(App& app, const std::string& folder);

}  // namespace skv
