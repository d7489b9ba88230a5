// The aircraft of the sample: makers, types and airlines that never were.
#pragma once

#include <string>
#include <vector>

#include "sample/sample_files.h"

namespace skv::sample {

struct Variation {
  std::string airline;       // also chooses the livery's colours
  std::string registration;  // atc_id
  int flight = 0;            // 0: none
  std::string texture;       // folder suffixes, "" for the plain folder
  std::string panel = {}, sound = {}, model = {};
};

// How an aircraft comes by its panel or its sound.
struct Part {
  std::vector<std::string> folders;  // suffixes of the real ones; {""} is the plain folder alone
  std::string alias;  // not empty: the plain folder is a pointer to this, relative to aircraft\ .
};

// What the author has taken pictures of.
enum class Pictures { none, one, repaints };

struct Design {
  std::string folder;  // below aircraft\ .
  std::string maker, type;
  std::string air;  // name of the flight dynamics, without .air
  double hertz = 60;
  std::string story;  // may hold line breaks
  Part panel, sound;
  std::vector<Variation> variations;
  Pictures pictures = Pictures::none;

  std::string name() const { return maker + " " + type; }
  std::string title(std::size_t variation) const;
};

// What the simulator holds.
std::vector<Design> simulatorAircraft();
// What the Hangar alone holds.
std::vector<Design> hangarAircraft();
// What comes in archives.
Design downloadedAircraft(std::string_view folder);

// aircraft.cfg in the simulator's text form.
std::string aircraftCfg(const Design& design);

// The aircraft's folder: configuration, flight dynamics, models, panels, sounds, textures.
Files aircraftFiles(const Design& design);
// What it adds to the simulator's shared folders: paths begin with Gauges/, Sound/, Texture/,
// Effects/.
Files sharedFiles(const Design& design);

}  // namespace skv::sample
