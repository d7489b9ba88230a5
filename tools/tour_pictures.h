// The stages of the tour that have to do with the pictures of add-ons.
#pragma once

#include <string>

#include "sample/sample_simulator.h"
#include "tour_user.h"

class QImage;

namespace skv::tour {

class PictureRoad {
 public:
  PictureRoad(const sample::SampleSimulator& sample, User& user) : sample_(sample), user_(user) {}
  void take();

 private:
  void look();
  void paste();
  void fromFile();
  void remove();

  // The entry of the menu that the right button opens on an image.
  void choose(const std::string& image, const std::string& entry,
              const std::string& pictureName = {});

  const sample::SampleSimulator& sample_;
  User& user_;
};

}  // namespace skv::tour
