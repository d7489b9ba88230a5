// A folder of a store that is filled under a name of the program's own, and gets its true name in
// one step when it is whole and on the disk.
//
//   C:\Hangar\aircraft\~SKVUnfinished\...   while an installation or a transfer runs
//   C:\Hangar\aircraft\b737\...             when it is complete
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
  static constexpr const char* name = "~SKVUnfinished";

  // `root` ends in a backslash. The folder will be `root` + `addonName`.
  StagedFolder(App& app, std::string root, const std::string& addonName);

  // Without trailing backslash.
  const std::string& path() const { return path_; }

  // Removes what stands there from this run, or from one before that was killed.
  Outcome clear() { return clear(app_, root_); }
  static Outcome clear(App& app, const std::string& root);
  // Makes it, empty. `root` must stand.
  Outcome make();
  // Gives it its true name, which nothing has.
  Outcome settle();
  // The same, or moves what is in it into the folder that has the name already.
  WalkReport settleOrMerge();
  // Makes settle() undone.
  Outcome takeBack();

 private:
  App& app_;
  const std::string root_, path_, target_;
  bool settled_ = false;
};

// At a start: removes what runs that were killed have left in the simulator, the Hangar and the
// scenery library.
void clearUnfinishedFolders(App& app);

}  // namespace skv
