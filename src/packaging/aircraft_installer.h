// Turns a ZIP that someone packed, in whatever folder layout, into an aircraft of the Hangar.
//
// There is no manifest to read. The installer knows what it has by file names alone: a fixed order
// of searches over the unpacked tree, each of which moves one whole folder and leaves the rest to
// the next. Nothing is written into the simulator.
#pragma once

#include "core/app.h"

namespace skv {

// Takes PendingZIP when it is set, and asks with a file dialog when it is not. Answers whether the
// aircraft is installed; the user has been told why not.
bool mnuFileInstallAC_Click(App& app);
// Adds the row that an aircraft of the Hangar lacks when an earlier run was cut short before its
// end. `name`: of its folder. False when it could not be listed, which the user is told.
bool listInstalledAC(App& app, const std::string& name);

}  // namespace skv
