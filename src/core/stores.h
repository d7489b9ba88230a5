// The layout of the program's stores: what lies where in the simulator, the Hangar, the Packages
// folder and the scenery library. Paths end in a backslash.
//
//   FSRoot      aircraft\b737\...    and Gauges, Sound, Texture, Effects for all aircraft
//               ADDON SCENERY\Alps\...
//   HangarDir   aircraft\b737\...    Main\b737\Gauges\... and likewise the other three
//   SceneryLib  Scenery\Alps\...     Main\Alps\Texture\...  Main\Alps\Effects\...
//   a Package   Aircraft\...         Main\Gauges\...
#pragma once

#include <array>
#include <string>

namespace skv {

// The simulator's folders that all aircraft share, in the order in which they are filled.
inline constexpr std::array sharedFolders{"Gauges", "Sound", "Texture", "Effects"};

// Below the root of the simulator or of the Hangar.
inline std::string aircraftRootOf(const std::string& root) { return root + "aircraft\\"; }
// Below the Hangar or the scenery library.
inline std::string mainRootOf(const std::string& store) { return store + "Main\\"; }
inline std::string sceneryRootOf(const std::string& sceneryLib) { return sceneryLib + "Scenery\\"; }

// The simulator's folder of add-on sceneries, below its root.
inline constexpr const char* addonScenery = "ADDON SCENERY\\";

// The record of an aircraft view lies in its root.
inline constexpr const char* aircraftListFile = "SKV_AC.lst";
inline constexpr const char* panelListFile = "SKV_PN.lst";
inline constexpr const char* soundListFile = "SKV_SN.lst";

inline constexpr const char* packageEnd = ".zip";

}  // namespace skv
