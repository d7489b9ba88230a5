// Changing a file of the simulator or of an add-on, whose state before the program's first change
// stays beside it: "Aircraft.preSKV.cfg", "Scenery.cfg.org". That file's existence says that there
// was a change, and it is never replaced.
//
// Whatever call fails or is the last one, one of the two files stands whole. Read-only is no
// obstacle, and stays.
#pragma once

#include <string>
#include <string_view>

#include "platform/file_system.h"

namespace skv {

// Gives `current` another content in one step, after `original` is a flushed copy of it or stood
// already. A file that cannot be kept is not changed; one that is clearly missing is made, with
// nothing to keep.
Outcome changeKeepingOriginal(FileSystem& files, const std::string& current,
                              const std::string& original, std::string_view content);

// Puts the original in the place of what is in force, in one step.
Outcome restoreOriginal(FileSystem& files, const std::string& current, const std::string& original);

}  // namespace skv
