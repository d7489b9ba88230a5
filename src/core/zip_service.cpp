#include "core/zip_service.h"

#include "core/disk_queries.h"
#include "core/messages.h"

namespace skv {

namespace {

// For the event handlers: they touch nothing but the status line and ZipDone.
constexpr int complete = 100;  // percent
constexpr int yieldsAfterAdding = 10000;

void connectProgress(App& app, Zipit& zip) {
  auto& status = app.frmMain.lblStatus;
  zip.AddProgress = [&status](int percent) { status.setProgress(percent); };
  zip.ExtractProgress = [&app, &status](int percent) {
    status.setProgress(percent);
    if (percent >= complete) app.ZipDone = true;
  };
  zip.BarReset1 = [&status] { status.clearProgress(); };
  zip.BarReset2 = [&status] { status.clearProgress(); };
  zip.Yield = [&app] { app.windows.yield(); };
}

bool hasSpace(App& app, const std::string& folder, double needed) {
  if (GetDiskFree(app.files(), folder) >= needed) return true;
  app.windows.messageBox(
      {"Insufficient Disk Space in \"" + folder + "\"!", ui::BoxIcon::exclamation});
  return false;
}

}  // namespace

ReadAndExtract::ReadAndExtract(App& app) : app_(app), Zipit1_(app.platform.zip.load(app.files())) {
  connectProgress(app, *Zipit1_);
}

bool ReadAndExtract::open(const std::string& archivefile) {
  // The control takes a missing archive for one that is to be made.
  if (!PathExists(app_.files(), archivefile))
    app_.step(Outcome::failure(err::fileNotFound, archivefile));
  else
    app_.step(Zipit1_->setArchivefile(archivefile));
  return !ReportError(app_);
}

bool ReadAndExtract::fits(const std::string& targetStore) {
  double needed = 0;
  names_.clear();
  for (const ZipEntry& entry : Zipit1_->entries()) {
    names_.push_back(entry.Filename);
    needed += static_cast<double>(entry.UncompressedSize);
  }
  return hasSpace(app_, app_.InstallTempDir, needed) && hasSpace(app_, targetStore, needed);
}

bool ReadAndExtract::extract(const std::string& extractfolder, int yields) {
  Zipit1_->extractfolder = extractfolder;
  Zipit1_->usedirectoryinfo = true;
  Zipit1_->extraction = 1;
  Zipit1_->extractswitch = true;
  app_.ZipDone = false;
  app_.step(Zipit1_->extractfiles(names_));
  if (ReportError(app_)) return false;
  app_.windows.yieldUntil([this] { return app_.ZipDone; });
  app_.ZipDone = false;
  ui::yieldTimes(app_.windows, yields);
  return true;
}

bool AddToArchive(App& app, const std::string& archivefile, bool includesystemfiles) {
  const auto zip = app.platform.zip.load(app.files());
  connectProgress(app, *zip);
  app.step(zip->setArchivefile(archivefile));
  if (ReportError(app)) return false;
  zip->includesystemfiles = includesystemfiles;
  zip->compressionlevel = 9;
  zip->addaction = 1;
  zip->usedirectoryinfo = true;
  app.step(zip->addfiles(app.PackFileList));
  if (ReportError(app)) return false;
  ui::yieldTimes(app.windows, yieldsAfterAdding);
  return true;
}

}  // namespace skv
