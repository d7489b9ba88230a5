// A file for a mail under way. It has no name once it is open, so that it goes with its last
// descriptor, whatever becomes of the program.
#pragma once

#include <string>

#include "base/outcome.h"
#include "platform/disk/os_error.h"

namespace skv {

// In a folder that is made for this user alone where it is missing.
Result<Descriptor> makeWorkFile(const std::string& folder);

}  // namespace skv
