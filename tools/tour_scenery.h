// The stages of the tour in the Scenery Manager.
#pragma once

#include <string>

#include "sample/sample_simulator.h"
#include "tour_user.h"

namespace skv::tour {

// From opening the view, over saving and adding, to deleting.
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
  void fromPackage();
  void install();
  void import();
  void deleteOnBothSides();

  void expectName(const std::string& offered);
  std::string database() const;
  bool unsaved() const;

  const sample::SampleSimulator& sample_;
  User& user_;
};

}  // namespace skv::tour
