// Packages: an add-on that is not in use, squeezed into a ZIP.
//
//   PacksDir + "b737.zip"            Aircraft\...   Main\Gauges\...  and the other shared folders
//   SceneryPacksPath + "Alps.zip"    Scenery\...    Main\Texture\... Main\Effects\...
//
// The add-on's folders stay, thinned out to their .CFG, .JPG and .TXT files; its row stays in its
// list. Only the Hangar and the scenery library know Packages: bit 2 of a row's icon less 1 tells
// that there is one.
#pragma once

#include "core/app.h"

namespace skv {

// Both work on the selected row: of lstInactScenery in the Scenery Manager, else of lstAircraft. In
// the simulator's view they change to the Hangar, select the same aircraft there and ask.
//
// Nothing is thinned before the Package is on the disk and every file that would go has been found
// in it as it is now. However the run ends, the folder is whole or the Package is, and another one
// finishes what was cut off. Aircraft whose folders have one name would have one Package, so none
// of them is compressed.
void mnuFilePackage_Click(App& app);
// Fills the row's folder. The Package goes last, when all of it has arrived. Of the files that
// thinning has left, one directly in the add-on's folder stays when it is newer than the Package's.
void mnuFileUnpackage_Click(App& app);

}  // namespace skv
