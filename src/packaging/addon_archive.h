// The front half of both installers: which archive, under which name, and everything that is in it
// unpacked into the working folder.
//
//   InstallTempDir\37927.6458333333\...                      the archive's contents
//   InstallTempDir\_37927.6458333333\SKVgauges.zip\...       those of an archive inside it
//
// A search that starts at InstallTempDir sees both as one tree. An archive that came by mail lies
// in InstallTempDir itself: it goes with the working folder when the add-on is in its store, and
// when it is not, it stays for the one who handed it over.
#pragma once

#include <string>

#include "core/app.h"
#include "core/standing_addon.h"
#include "core/zip_service.h"
#include "packaging/left_over.h"

namespace skv {

// What the installers differ in. Paths end in a backslash.
struct AddonStore {
  AddonType type;
  std::string folder;    // HangarDir or SceneryLib: has to have room
  std::string addons;    // where each add-on has a folder: HangarDir + "aircraft\"
  std::string packages;  // where each may have a Package
  const char* kind;      // as in "Aircraft 'b737' already exists!"
};

class AddonArchive {
 public:
  AddonArchive(App& app, AddonStore store);

  // The steps, in this order. False: the run is over, and the user has been told why or knows it.
  // Whoever gets false from a step after choose() ends by giveUp().
  bool choose();
  bool askName();
  bool unpack();
  bool unpackEmbedded();

  const std::string& name() const { return name_; }
  // Of an add-on that stands already, in the place of all steps.
  void setName(const std::string& name) { name_ = name; }
  // The name was refused since the add-on of that name stands.
  bool addonStands() const { return nameTaken_ && standing_ == Standing::whole; }
  // Whether the user still has what he began with, so that what was unpacked from it may go.
  bool stillThere() const;

  // The end of a run that has placed everything: what is left over is kept, and the working folder
  // emptied.
  void finish(LeftOver& leftOver);
  // Tells in one box which names of the archive the disk could not take and what was left over,
  // which the user can look at then.
  void tellRest(const LeftOver& leftOver);
  // The end of any other run: what was unpacked goes.
  void giveUp();

 private:
  std::string proposedName() const;
  bool isNameFree();
  bool mayPutAside();
  void noteRenamed(const ReadAndExtract& job, const std::string& embedded);
  bool unpackOneEmbedded(const std::string& folder, const std::string& name);
  Outcome deleteEmbedded(const std::string& folder, const std::string& name);
  void status(const std::string& text) { app_.frmMain.lblStatus.caption = text; }

  App& app_;
  const AddonStore store_;
  const std::string runFolder_;           // unique to the run, with trailing backslash
  std::string path_;                      // of the archive
  std::string name_;                      // of the add-on's folder, as the user confirmed it
  Standing standing_ = Standing::absent;  // of the name when it was confirmed
  bool nameTaken_ = false;
  int renamed_ = 0;
  std::string renamedNames_;  // a line for each
  bool unpacks_ = false;      // something may have been unpacked
};

}  // namespace skv
