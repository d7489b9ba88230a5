// InstallTempDir, the one working folder of installers, transfers and Package jobs.
//
// Both functions take away hidden entries too, which a walk leaves alone: what a Macintosh adds to
// an archive (".DS_Store", "._picture.bmp") is hidden on this side of the disk.
#pragma once

#include "core/app.h"

namespace skv {

// Before a job: removes the folders that a failed one has left, so that they cannot get into the
// next add-on. Files directly in it stay: an archive that came by mail lies there.
void clearWorkingFolders(App& app);

// After a job: removes all that stands in it. What cannot be removed stays, without a word.
void emptyWorkingFolder(App& app);

}  // namespace skv
