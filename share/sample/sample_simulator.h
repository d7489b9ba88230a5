// A believable installation of the simulator on a drive C: of its own, for trying the program out,
// for tests and for measuring. Every file is made by procedure; every name is invented.
//
//   <folder>/dosdevices/c:  -> ../drive_c
//   <folder>/dosdevices/z:  -> /
//   <folder>/drive_c/Program Files/Microsoft Games/FS2002/   the simulator, Hangar and Packages
//   <folder>/drive_c/Downloads/                              add-on archives
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "sample/sample_downloads.h"

namespace skv::sample {

struct SampleSimulator {
  // Places on disk.
  std::filesystem::path drives, driveC, simulator, downloads;
  // The same as Windows paths, as settings hold them.
  std::string FSRoot, HangarDir, PacksDir, PanelsDir, SceneryLib, Downloads;
  std::vector<Download> archives;
};

// The folder of drives alone, with an empty drive C:. Nothing happens to what stands there.
void makeDrives(const std::filesystem::path& folder);

// Everything. Files that stand there under the same names are replaced, others stay. Throws
// std::exception.
//
// Among the rows of the lists every combination of places (simulator, Package, Hangar) occurs,
// nowhere included.
SampleSimulator makeSample(const std::filesystem::path& folder);

// For measuring.

// An aircraft add-on of `files` files and about `bytes` bytes in all, of the usual kinds: pictures,
// models, sounds, gauges, text. Its aircraft.cfg stands in BigPlane/, its shared folders beside it.
// The folder form and the archive form hold the same files.
void makeLargeTree(const std::filesystem::path& folder, std::size_t files, std::uint64_t bytes);
void makeLargeZip(const std::filesystem::path& file, std::size_t files, std::uint64_t bytes);

// A scenery of `files` files and `bytes` bytes in all, in BigScenery/Scenery and
// BigScenery/Texture.
void makeLargeSceneryZip(const std::filesystem::path& file, std::size_t files, std::uint64_t bytes);

// `count` small aircraft folders ("ac00001", ...), each of six files in five folders.
void makeAircraftFolders(const std::filesystem::path& folder, std::size_t count);
// A list of the rows of such folders. `folder` is their Windows path with trailing backslash.
std::string aircraftList(const std::string& folder, std::size_t count);

}  // namespace skv::sample
