// The two files of an aircraft's description: "Aircraft.cfg", which is in force, and
// "Aircraft.preSKV.cfg", the state before the program's first change. The second one's existence
// says that there was one.
//
// `folder` is the aircraft's, with trailing backslash. A failure leaves both files as they were;
// whatever call fails or is the last one, one of the two stands whole. Read-only is no obstacle,
// and stays.
#pragma once

#include <string>
#include <string_view>

#include "platform/file_system.h"

namespace skv {

inline constexpr const char* aircraftCfg = "Aircraft.cfg";
inline constexpr const char* originalAircraftCfg = "Aircraft.preSKV.cfg";

// Gives the description another content, after its state before the first change is kept on disk.
// A description that cannot be kept is not changed.
Outcome changeAircraftCfg(FileSystem& files, const std::string& folder, std::string_view content);

// Puts the original in the place of what is in force.
Outcome restoreAircraftCfg(FileSystem& files, const std::string& folder);

}  // namespace skv
