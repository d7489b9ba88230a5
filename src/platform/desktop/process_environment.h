// What this process was started with.
#pragma once

#include "platform/disk/drive_file_system.h"
#include "platform/platform.h"

namespace skv {

// The folder of the program file, and TEMP as a Windows path. Without TEMP the working folder lies
// in a private folder of the user, since start-up empties a folder in it; "" when none can be made.
Environment processEnvironment(const DriveFileSystem& files);

}  // namespace skv
