// What the folder of an add-on may be called: a name that the disk takes, that the simulator finds
// and that the list files can store. Archives come under any name, and users type what they like.
#pragma once

#include <string>

#include "core/app.h"

namespace skv {

// Why no add-on below `root` can have this name, in words for the user; "" when it can. The empty
// name is not looked at.
std::string faultOfAddonName(const App& app, const std::string& root, const std::string& name);

// The nearest name that can be: "Łódź" becomes "Lodz", "what?" becomes "what_". One that can be
// stays as it is, and so does the empty one.
std::string nearestAddonName(const App& app, const std::string& root, const std::string& name);

}  // namespace skv
