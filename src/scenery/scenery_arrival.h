// A scenery on its way into the library: the room that it needs, its folders, its copy.
#pragma once

#include <string>

#include "core/app.h"
#include "core/staged_folder.h"
#include "core/walktree.h"

namespace skv {

// "1 file", "7 files".
std::string countedFiles(int files);

// The size of a tree in bytes. What could not be measured shows when it is copied.
double sizeOf(App& app, const std::string& folder);
// The room in bytes that a scenery of that size needs, with a margin.
double withMargin(double size);
void tellNoRoom(App& app, const std::string& library);

// Makes the library's two roots below one that stands.
void makeLibraryRoots(App& app, const std::string& library);

// Copies a scenery's files to where they are complete or not at all; a folder that has the name
// already gets them added. `report` is that of the copy. Answers whether all is there and on the
// disk.
bool arrive(App& app, StagedFolder& folder, const std::string& source, const std::string& library,
            WalkReport& report);

}  // namespace skv
