// The stages of the tour among aircraft, panels, sounds and Packages, in the simulator's view and
// in the Hangar.
#pragma once

#include <string>

#include "sample/sample_simulator.h"
#include "tour_user.h"

namespace skv::tour {

class AddonRoad {
 public:
  AddonRoad(const sample::SampleSimulator& sample, User& user) : sample_(sample), user_(user) {}
  void take();

 private:
  void assignAndReset();
  void importAndDelete();
  void compressAndBack();

  void selectAircraft(const std::string& name);

  const sample::SampleSimulator& sample_;
  User& user_;
};

}  // namespace skv::tour
