// The sceneries of the sample: Scenery.cfg and the folders below "ADDON SCENERY".
#pragma once

#include <string>
#include <vector>

#include "sample/sample_files.h"

namespace skv::sample {

// Some sixty areas, the simulator's own and add-ons, with gaps between their numbers, inactive
// ones, remote ones, flattened ground and excluded ground.
std::string sceneryCfg();

// Names of the add-on sceneries, which are also those of their folders.
std::vector<std::string> addonSceneries();

// Scenery/*.bgl and Texture/*.bmp of one of them.
Files sceneryFiles(const std::string& name);

// A scenery of the library. One that is packed away has its files in a Package.
struct LibraryScenery {
  std::string name;
  bool installed, packed;
};
// One for each combination of places.
std::vector<LibraryScenery> librarySceneries();
// The list of them.
std::string sceneryLibrary();

}  // namespace skv::sample
