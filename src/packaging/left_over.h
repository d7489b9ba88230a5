// What an archive holds and its add-on has no place for: readmes, a second aircraft, the files of a
// variant whose names are taken. It is kept until the next start, so that the user can look for
// what he misses.
//
//   TempDir\SKVLeftOver\Alps\readme.txt
//   TempDir\SKVLeftOver\Alps\night.zip\Scenery\a.bgl    of an archive inside the archive
#pragma once

#include <string>

#include "core/app.h"
#include "core/walktree.h"

namespace skv {

// That of one installation. Makes nothing on the disk while there is nothing to keep.
class LeftOver {
 public:
  LeftOver(App& app, std::string addonName);

  // Moves one file of the working folder there, at once.
  Outcome take(const std::string& path);
  // Moves all that is in sight in the working folder's folders there. When the answer is not
  // complete, the rest of it is still in the working folder.
  WalkReport takeRest();
  // For an installation that has come to nothing.
  void discard();

  int count() const { return count_; }
  // Their paths in the archive, a line for each.
  const std::string& names() const { return names_; }
  // With trailing backslash.
  const std::string& folder() const { return folder_; }

 private:
  Outcome begin();
  WalkReport takeFolder(const std::string& folder, const std::string& part);
  void note(const std::string& name);

  App& app_;
  const std::string addonName_;
  std::string folder_;  // "" until something is kept
  int count_ = 0;
  std::string names_;
};

// At a start: removes what the last run of the program has kept.
void clearLeftOver(App& app);

}  // namespace skv
