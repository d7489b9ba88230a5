// The back half of both installers: what was unpacked into the working folder finds its places in
// the two folders that an add-on has in its store.
//
//   HangarDir   aircraft\b737\...   Main\b737\Gauges\...
//   SceneryLib  Scenery\Alps\...    Main\Alps\Texture\...
//
// The searches see the archive's contents and those of all embedded archives as one tree. Each
// takes one whole folder and leaves the rest to the next. Both folders are staged (see
// staged_folder.h) until settle().
#pragma once

#include <span>
#include <string>

#include "core/app.h"
#include "core/staged_folder.h"
#include "core/walktree.h"
#include "packaging/addon_archive.h"
#include "packaging/left_over.h"

namespace skv {

class AddonPlacement {
 public:
  AddonPlacement(App& app, const AddonStore& store, const std::string& name);

  // Makes both folders and, in the main one, those of `shared`. False after an error box.
  bool makeFolders(std::span<const char* const> shared);

  // Where the add-on's own files, and those for the simulator's shared folders, are put.
  // Without trailing backslash.
  const std::string& addon() const { return addon_.path(); }
  const std::string& main() const { return main_.path(); }

  // The first folder that a finder hits in the working folder, or in `where`; "" for none.
  std::string find(WalkCode finder) { return find(finder, app_.InstallTempDir); }
  std::string find(WalkCode finder, const std::string& where);
  // All that is in one folder into another, which stands.
  void move(const std::string& from, const std::string& to);
  // The same, except that no file takes the place of one that came before it: what differs from
  // that is left over, and what does not goes.
  void moveBehind(const std::string& from, const std::string& to);
  // The first folder that the finder hits into `folder` ("\\Effects") of the main one.
  void placeShared(const char* text, WalkCode finder, const char* folder);

  // What was moved so far. What a search could not look into may hold what the clean-up would
  // delete: that is no whole add-on either.
  WalkReport& report() { return placed_; }
  LeftOver& leftOver() { return leftOver_; }
  // Whether everything has gone well so far and the user wants it to go on.
  bool goesOn() const { return !app_.stopRequested && placed_.complete(); }

  // Puts all on the disk and gives both folders their names, the add-on's last: a folder of that
  // name stands for a whole add-on. All is there before a list says so and before the archive,
  // which may be the only copy, goes. A folder that has the name and holds no add-on is put aside
  // under another one. False when it did not succeed, which the user is told.
  bool settle();
  // Takes back what settle() has done. While the user's archive stands, what was moved goes.
  void undo(bool archiveStands);

 private:
  Outcome makeRoom();
  Outcome keepOne(const std::string& path, const std::string& place);
  void status(const char* text) { app_.frmMain.lblStatus.caption = std::string(text); }

  App& app_;
  const AddonStore store_;
  const std::string target_;  // the add-on's folder, without trailing backslash
  StagedFolder addon_, main_;
  WalkReport placed_;
  LeftOver leftOver_;
  std::string aside_;  // where a folder of its name is kept; "" for none
};

}  // namespace skv
