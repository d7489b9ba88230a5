// The stages of the tour that have to do with Packages by mail. Nothing leaves the machine: what
// comes lies in a mail folder of the tour's own, and the mail that is written is not sent.
#pragma once

#include <filesystem>
#include <string>

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
  void install();

  // A mail folder with an add-on's archive in it.
  std::filesystem::path inbox() const { return sample_.driveC / "Inbox"; }

  const sample::SampleSimulator& sample_;
  User& user_;
};

}  // namespace skv::tour
