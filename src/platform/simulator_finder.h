// Where people have the simulator.
#pragma once

#include <string>
#include <vector>

namespace skv {

class SimulatorFinder {
 public:
  virtual ~SimulatorFinder() = default;
  // Windows paths with trailing backslash of the folders that hold the simulator's Scenery.cfg, the
  // likeliest first, each once. Looks at known places and never walks a disk.
  virtual std::vector<std::string> find() const = 0;
};

}  // namespace skv
