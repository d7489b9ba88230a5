// The stages of the tour that have to do with Packages by mail. The mail that is written is not
// sent.
#pragma once

#include "sample/sample_simulator.h"
#include "tour_user.h"

namespace skv::tour {

class MailRoad {
 public:
  MailRoad(const sample::SampleSimulator& sample, User& user) : sample_(sample), user_(user) {}
  void take();

 private:
  void accounts();
  void write();

  const sample::SampleSimulator& sample_;
  User& user_;
};

}  // namespace skv::tour
