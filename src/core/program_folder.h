// What comes with the program: the specimen pictures, the manual.
#pragma once

#include <string>

#include "core/app.h"

namespace skv {

// Where a file or folder of that name is: beside the program, or in the data folder of an
// installation that keeps the two apart. A folder's name ends in a backslash.
std::string shippedWith(const App& app, const std::string& name);

}  // namespace skv
