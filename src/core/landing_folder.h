// The folder in which an add-on arrives, below the root of the aircraft or of the sceneries in the
// simulator or in a store of ours.
#pragma once

#include <string>

#include "core/app.h"
#include "core/staged_folder.h"

namespace skv {

// Where an add-on of that name stands, this is its folder, which is then brought up to date. A new
// one arrives in a StagedFolder, and what did not settle() goes again, with the object or at
// the next arrival.
class LandingFolder {
 public:
  // `root` ends in a backslash and stands.
  LandingFolder(App& app, const std::string& root, const std::string& folderName);
  ~LandingFolder();
  LandingFolder(const LandingFolder&) = delete;
  LandingFolder& operator=(const LandingFolder&) = delete;

  // Fails where nothing may be put, or the disk does not tell. Nothing is left behind then.
  Outcome open();
  // To copy to, with trailing backslash.
  std::string path() const { return staged_ ? stage_.path() + "\\" : target_; }
  // When all is there: puts it on the disk and gives the folder its true name.
  Outcome settle();

 private:
  App& app_;
  const std::string root_, target_;
  StagedFolder stage_;
  bool staged_ = false;
};

}  // namespace skv
