// The detectors of the import commands: a configuration file that a walk has found becomes a row of
// a library list, unless its folder is listed already.
#pragma once

#include <string>

#include "core/app.h"

namespace skv {

// `folder` is where the file was found, with trailing backslash, and `file` its name as it stands
// there, which saves the search for other letters. The outcome is that of reading the file: one
// that cannot be read tells neither a name nor whether it is an alias, and adds no row.
Outcome scanAircraft(App& app, const std::string& folder, const std::string& file);
Outcome scanPanel(App& app, const std::string& folder, const std::string& file);
Outcome scanSound(App& app, const std::string& folder, const std::string& file);

// How many aircraft an import would take into an empty list: the folders with an aircraft.cfg, at
// any depth below ACRoot. Who has many is told quickly, and `all` is false then.
struct AircraftCount {
  int aircraft = 0;
  bool all = true;
};
AircraftCount countAircraft(const App& app);

}  // namespace skv
