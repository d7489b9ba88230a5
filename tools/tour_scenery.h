// The stages of the tour in the Scenery Manager.
#pragma once

#include <string>

#include "sample/sample_simulator.h"
#include "tour_user.h"

namespace skv::tour {

// From opening the view, over saving and adding, to deleting. The library is empty before.
class SceneryRoad {
 public:
  SceneryRoad(const sample::SampleSimulator& sample, User& user) : sample_(sample), user_(user) {}
  void take();

 private:
  void openView();
  void moveAndSwitch();
  void save();
  void addToLibrary();
  void editOptions();
  void addToSimulator();
  void import();
  void deleteOnBothSides();

  std::string database() const;
  bool unsaved() const;

  const sample::SampleSimulator& sample_;
  User& user_;
};

}  // namespace skv::tour
