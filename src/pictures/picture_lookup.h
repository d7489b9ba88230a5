// Which picture file an add-on shows: the program's own, else one that came with the add-on.
//
// The names in one listing of each folder decide, and no file is opened: a picture that turns out
// to be broken is no picture. A folder that cannot be listed holds none. All answer a path, "" for
// none.
#pragma once

#include <string>

#include "platform/file_system.h"

namespace skv {

// The program's own picture of an add-on. The picture commands write and delete this name alone, so
// that what came with the add-on stays.
inline constexpr const char* ownPictureName = "SKVscrn.jpg";

// The program's own picture in the folder.
std::string ownPictureIn(const FileSystem& files, const std::string& folder);
// The first *.jpg of the folder, else *.png, else *.webp.
std::string firstPictureIn(const FileSystem& files, const std::string& folder);
// The program's own, else the first one: the picture of a panel.
std::string panelPictureIn(const FileSystem& files, const std::string& folder);

// Where the picture of an aircraft may lie. Folders end in a backslash; "" for one that there is
// not.
struct AircraftPlaces {
  std::string TexDir;     // textures of the variation
  std::string Folder;     // of the aircraft
  std::string specimens;  // pictures by type of aircraft, as "747-400.jpg"
  std::string type;       // the variation's ui_type
};

struct AircraftPicture {
  std::string file = {};
  bool specimen = false;  // it shows the type, not this aircraft
};

AircraftPicture findAircraftPicture(const FileSystem& files, const AircraftPlaces& places);

}  // namespace skv
