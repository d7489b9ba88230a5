// Finds the simulator on the program's own drives and in the user's Wine prefixes.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/simulator_finder.h"

namespace skv {

class WineSimulatorFinder : public SimulatorFinder {
 public:
  // The native folder of drive links, as findDrivesFolder (drives.h) gives it.
  explicit WineSimulatorFinder(std::string drivesFolder) : drivesFolder_(std::move(drivesFolder)) {}
  // First what a registry names, the own drives' before other prefixes', then the usual folders.
  // What stands behind a disk that does not answer for seconds is given up.
  std::vector<std::string> find() const override;

 private:
  std::string drivesFolder_;
};

}  // namespace skv
