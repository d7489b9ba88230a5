// One run of compress or uncompress, for the row that was selected when it began.
#pragma once

#include <string>
#include <vector>

#include "aircraft/place_mask.h"
#include "core/disk_queries.h"
#include "core/zip_service.h"
#include "packaging/thinning.h"

namespace skv {

// The kinds of add-ons that have Packages.
struct PackageKind {
  const char* part;  // its folder in a Package, with trailing backslash
  const char *alreadyCompressed, *notYetCompressed;
  ui::ListView ui::FrmMain::*list;
};
extern const PackageKind aircraftKind, sceneryKind;

class PackageJob {
 public:
  PackageJob(App& app, const PackageKind& kind);

  void compress();
  void uncompress();

 private:
  ui::ListView& list() { return app_.frmMain.*kind_.list; }
  void status(const std::string& text) { app_.frmMain.lblStatus.caption = text; }
  void notice(const std::string& text) { app_.frmMain.lblStatus.notice = text; }

  // Before anything is done. What is in the way is told.
  Presence lookForPackage();
  bool leavesNothingToThin();
  bool sourceStands();
  bool mayBegin(Outcome may);
  bool isTheOneMeant();
  bool makePackages();

  bool makeWork();
  void leaveWork();

  // The steps of both ways. Each tells why it has failed.
  bool pack();
  bool packageIsWhole();
  void thin();
  bool unpack();

  // The path of an entry below the working folder, and its place in the add-on, "" for none.
  static std::string pathOf(const std::string& entry);
  std::string placeOf(const std::string& path) const;
  void freeTargets(const ReadAndExtract& job);
  bool allArrived(const ReadAndExtract& job, const WalkReport& moved);

  void tell(const std::string& text, const std::string& details = {});
  // Tells of steps that have failed. Nothing has been thinned by then, and the Package stays.
  bool done(const WalkReport& report);
  void mark(bool compressed);

  int iconOf(int row);
  std::string nameOf(int row);
  std::string folderOf(int row);
  std::vector<std::string> foldersOfOthers();
  // Of another aircraft whose Package would have the same name; "" for none.
  std::string namesake() const { return isAircraft_ ? namesakeInHangar(app_, folder_) : ""; }

  App& app_;
  FileSystem& files_;
  const PackageKind& kind_;
  const bool isAircraft_;
  const std::string title_, name_;  // of the row, of its folder
  const std::string store_, root_, packages_, package_;
  const std::string folder_, main_;  // of the add-on, with trailing backslash
  const std::string work_;
  Thinning thinning_;
};

}  // namespace skv
