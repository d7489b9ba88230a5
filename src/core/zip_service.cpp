#include "core/zip_service.h"

#include <utility>

#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/messages.h"

namespace skv {

namespace {

constexpr int complete = 100;  // percent
constexpr int yieldsAfterAdding = 10000;

// The events touch nothing but the status line and ZipDone.
void connectEvents(App& app, Zipit& zip) {
  auto& status = app.frmMain.lblStatus;
  zip.AddProgress = [&status](int percent) { status.setProgress(percent); };
  zip.ExtractProgress = [&app, &status](int percent) {
    status.setProgress(percent);
    if (percent >= complete) app.ZipDone = true;
  };
  zip.BarReset1 = [&status] { status.clearProgress(); };
  zip.BarReset2 = [&status] { status.clearProgress(); };
  zip.Yield = [&app] {
    app.windows.yield();
    return !app.stopRequested;
  };
}

bool wasStopped(const App& app, const Outcome& outcome) {
  return app.stopRequested && outcome.number() == err::cancelled;
}

}  // namespace

ReadAndExtract::ReadAndExtract(App& app, std::string container)
    : app_(app), container_(std::move(container)), Zipit1_(app.platform.zip.load(app.files())) {
  connectEvents(app, *Zipit1_);
}

std::string ReadAndExtract::withContainer(const std::string& text) const {
  if (container_.empty()) return text;
  return text + "\r\n\"" + fileName(archive_) + "\" lies in \"" + container_ + "\".";
}

bool ReadAndExtract::report(const Outcome& outcome) {
  if (outcome.ok()) return false;
  ReportError(app_, Outcome::withText(outcome.number(), withContainer(outcome.description())));
  return true;
}

bool ReadAndExtract::open(const std::string& archivefile) {
  archive_ = archivefile;
  // The control takes a missing archive for one that is to be made.
  const auto found = app_.files().attributes(archivefile);
  return !report(found.ok() ? Zipit1_->setArchivefile(archivefile) : found.outcome());
}

bool ReadAndExtract::fits(const std::string& targetStore) {
  double needed = 0;
  names_.clear();
  for (const ZipEntry& entry : Zipit1_->entries()) {
    names_.push_back(entry.Filename);
    needed += static_cast<double>(entry.UncompressedSize);
  }
  return hasSpace(app_.InstallTempDir, needed) && hasSpace(targetStore, needed);
}

bool ReadAndExtract::hasSpace(const std::string& folder, double needed) {
  const auto free = GetDiskFree(app_.files(), folder);
  if (!free.ok()) {
    tellFailure(app_, withContainer("The free space in \"" + folder + "\" cannot be told."),
                free.outcome());
    return false;
  }
  if (free.value() >= needed) return true;
  app_.windows.messageBox(
      {withContainer("Insufficient Disk Space in \"" + folder + "\"!"), ui::BoxIcon::exclamation});
  return false;
}

bool ReadAndExtract::extract(const std::string& extractfolder, int yields) {
  Zipit1_->extractfolder = extractfolder;
  Zipit1_->usedirectoryinfo = true;
  Zipit1_->extraction = 1;
  Zipit1_->extractswitch = true;
  app_.ZipDone = false;
  const Outcome extracted = Zipit1_->extractfiles(names_);
  if (wasStopped(app_, extracted) || report(extracted)) return false;
  app_.windows.yieldUntil([this] { return app_.ZipDone; });
  app_.ZipDone = false;
  app_.windows.yieldTimes(yields);
  return true;
}

bool AddToArchive(App& app, const std::string& archivefile, bool includesystemfiles) {
  const auto zip = app.platform.zip.load(app.files());
  connectEvents(app, *zip);
  if (PathExists(app.files(), archivefile)) {
    ReportError(app, Outcome::failure(err::fileExists, archivefile));
    return false;
  }
  if (ReportError(app, zip->setArchivefile(archivefile))) return false;
  zip->includesystemfiles = includesystemfiles;
  zip->compressionlevel = 9;
  zip->addaction = 1;
  zip->usedirectoryinfo = true;
  const Outcome added = zip->addfiles(app.PackFileList);
  if (wasStopped(app, added) || ReportError(app, added)) return false;
  app.windows.yieldTimes(yieldsAfterAdding);
  return true;
}

}  // namespace skv
