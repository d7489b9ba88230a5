// The simulator's scenery database, "Scenery.cfg" in its root folder, as plain values:
//
//   [General]
//   Title=FS World Scenery
//   Cache_Size=0
//   Clean_On_Exit=TRUE
//
//   [Area.001]
//   Title=Default Terrain
//   Local=Scenery\World
//   Layer=1
//   Active=TRUE
//   Remote=
//   Texture_ID=1
//   Flatten.0=0,N47 27.22,W122 18.31,N47 25.80,W122 18.10
//   Exclude=N51 12.00,W0 20.00,N51 06.00,W0 05.00,all
//
// Areas are numbered from 001 to 999. What has the higher layer is drawn above the others. Each
// area may have one Flatten without an index and ten with one, from 0 to 9; Exclude likewise.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"

namespace skv {

struct SceneryArea {
  int number = 0;  // of its section, from 1; a file that is written counts its areas anew
  std::string Title = {};
  std::string Layer = {};  // as the file spells it
  std::string Local = {};  // the folder, relative to the simulator's root
  bool Active = false;
  bool Required = false;  // read, and not written: the simulator's word that it cannot do without
  std::string Remote = {};
  std::string Texture_ID = {};
  // The value of the key without index first, even when it is empty, then those of the indexed keys
  // that are not empty, in their order. None when the area has no value at all.
  std::vector<std::string> Flatten = {}, Exclude = {};
};

struct SceneryCfg {
  std::string Cache_Size = {}, Clean_On_Exit = {};  // of [General], carried over as they are
  std::vector<SceneryArea> areas = {};
  // Sections of areas that are in the file and not in `areas`, see parseSceneryCfg, each as a line
  // for the user: "Area.700: Far", "Area.003 (no title)". Empty ones do not count.
  std::vector<std::string> unreached = {};

  static constexpr int lastNumber = 999;  // that anybody reads
};

// Takes whatever the bytes are. An area without a title is none. Areas are looked for by their
// numbers, upwards; after eleven numbers in a row without an area none is looked for any more. Of
// sections with one name the first counts. What is missing reads as "".
SceneryCfg parseSceneryCfg(std::string_view bytes, const CodePage& codePage);
// The same without the areas: what has to be known of a file that is to be replaced.
SceneryCfg outlineOfSceneryCfg(std::string_view bytes, const CodePage& codePage);

// A whole file: the first area becomes number and layer 1, the next one 2, and so on. Values read
// back as they are, but for line breaks, which become blanks; indexed values are numbered from 0
// without gaps.
std::string sceneryCfgBytes(const SceneryCfg& cfg, const CodePage& codePage);

}  // namespace skv
