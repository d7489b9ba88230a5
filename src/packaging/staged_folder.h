// A folder of a store that an installer fills under a name of the program's own, and that gets its
// true name in one step when it is whole and on the disk.
//
//   C:\Hangar\aircraft\~SKVInstall\...   while the installation runs
//   C:\Hangar\aircraft\b737\...          when it is complete
//
// So a folder with an add-on's name is never half of one, however the run has ended, and what a run
// that was killed has left is known by its name: nothing else is ever removed.
#pragma once

#include <string>

#include "core/app.h"
#include "core/walktree.h"

namespace skv {

class StagedFolder {
 public:
  static constexpr const char* name = "~SKVInstall";

  // `root` ends in a backslash. The folder will be `root` + `addonName`.
  StagedFolder(App& app, std::string root, const std::string& addonName)
      : app_(app), path_(root + name), target_(root + addonName), root_(std::move(root)) {}

  // Without trailing backslash.
  const std::string& path() const { return path_; }

  // Removes what stands there from a run before, or from this one.
  Outcome clear();
  // Makes it, empty, and `root` when it is missing.
  Outcome make();
  // Gives it its true name, which nothing has.
  Outcome settle();
  // The same, or moves what is in it into the folder that has the name already.
  WalkReport settleOrMerge();
  // Makes settle() undone.
  Outcome takeBack();

 private:
  App& app_;
  std::string path_, target_, root_;
  bool settled_ = false;
};

}  // namespace skv
