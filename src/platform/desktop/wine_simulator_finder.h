// Finds the simulator on the program's own drives and in the user's Wine prefixes.
#pragma once

#include "platform/file_system.h"
#include "platform/simulator_finder.h"

namespace skv {

class WineSimulatorFinder : public SimulatorFinder {
 public:
  explicit WineSimulatorFinder(const FileSystem& files) : files_(files) {}
  // First what a registry names, the own drives' before other prefixes', then the usual folders.
  std::vector<std::string> find() const override;

 private:
  const FileSystem& files_;
};

}  // namespace skv
