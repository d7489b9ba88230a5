// InstallTempDir, the one working folder of installers, transfers and Package jobs.
//
// All that stands in it goes, so it is refused when it is a link or a file, when it holds a store
// of the program, and when the disk does not tell. Links in it are taken away, never gone through.
// Hidden entries go too, which a walk leaves alone: what a Macintosh adds to an archive
// (".DS_Store", "._picture.bmp") is hidden on this side of the disk.
#pragma once

#include <string>
#include <vector>

#include "core/app.h"

namespace skv {

// At a start: makes the folder when it is missing, and removes all that stands in it. What cannot
// be removed stays. A failure is told by the caller, who does not go on.
//
// An archive directly in it came by mail, and the run that was to install it was killed: it may be
// the only copy. Answers the places where such are kept now.
Result<std::vector<std::string>> prepareWorkingFolder(App& app);

// Takes an archive out of the folder to TempDir, which nothing empties, under a name that is free
// there. Answers its place.
Result<std::string> keepArchive(App& app, const std::string& path);

// Before a job: makes the folder when it is missing, and removes the folders that a failed job has
// left, so that they cannot get into the next add-on. Files directly in it stay: an archive that
// came by mail lies there. Fails when such a folder could not be removed; the job must not start
// then.
Outcome clearWorkingFolders(App& app);

// After a job: removes all that stands in it. What cannot be removed stays, without a word.
void emptyWorkingFolder(App& app);

}  // namespace skv
