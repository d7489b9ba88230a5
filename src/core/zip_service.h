// The two job sequences of every archive that the program reads or writes.
//
// A job works on one archive, in the ZIP control that lives for its time. Failures are shown where
// they happen: a caller that gets false leaves, by its exit. When the user has asked the operation
// to stop a job ends early and answers false without a box.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/app.h"

namespace skv {

// The extraction of one archive. Its steps are called in this order.
class ReadAndExtract {
 public:
  // Loads the control. `container` is the user's archive in which this one lies, "" for none: what
  // is told of an archive that the user has never seen names the one that he has.
  explicit ReadAndExtract(App& app, std::string container = {});

  // Opens the archive; shows the error box when it cannot be opened.
  bool open(const std::string& archivefile);
  // Lists the entries and tests the free space of InstallTempDir and then of `targetStore`, each
  // against the whole archive; shows which of them is too small. The message names the folder as
  // given.
  bool fits(const std::string& targetStore);
  // Writes all entries below `extractfolder`, which exists. Then waits for ZipDone, clears it and
  // yields `yields` times more. Shows the error box on a failure.
  bool extract(const std::string& extractfolder, int yields);
  // The archive's entries, as stored. Once fits() has been asked.
  const std::vector<std::string>& names() const { return names_; }
  // Afterwards: what had to get another name than the archive has for it.
  const std::vector<RenamedEntry>& renamed() const { return Zipit1_->renamed(); }

 private:
  bool hasSpace(const std::string& folder, double needed);
  std::string withContainer(const std::string& text) const;
  // Answers whether it was a failure.
  bool report(const Outcome& outcome);

  App& app_;
  const std::string container_;
  std::string archive_;
  std::unique_ptr<Zipit> Zipit1_;
  std::vector<std::string> names_;
};

// Stores the files of PackFileList, named relative to the current folder of the file system, in a
// new archive. Shows the error box on a failure, and leaves no archive then.
bool AddToArchive(App& app, const std::string& archivefile, bool includesystemfiles);

}  // namespace skv
