#include "aircraft/hangar_transfer.h"

#include "aircraft/list_files.h"
#include "aircraft/place_mask.h"
#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/long_operation.h"
#include "core/messages.h"
#include "core/stores.h"
#include "core/view.h"
#include "core/walktree.h"
#include "core/working_folder.h"
#include "core/zip_service.h"

namespace skv {

namespace {

constexpr int yieldsAfterExtraction = 2000;

// What a transfer needs to know. The row itself may move or go while the transfer yields, and the
// settings may name other folders.
struct Cargo {
  std::string FSRoot, HangarDir, PacksDir;
  ui::ListView::RowId row;
  std::string Name;
  std::string Folder;
  std::string FolderName;
  int Mask;
  bool Added = false;  // this transfer made the aircraft's folder at the target
};

// Makes one level when it is missing. A failure is shown, and ends the transfer.
bool ensureFolder(App& app, const std::string& folder, bool* added = nullptr) {
  if (PathExists(app.files(), folder)) return true;
  if (!app.step(app.files().makeFolder(folder))) return !ReportError(app);
  if (added != nullptr) *added = true;
  return true;
}

// The other view learns of a new aircraft by a line in its list.
void appendToOtherList(App& app, const Cargo& cargo, const std::string& root) {
  if (!cargo.Added) return;
  app.step(appendLibraryRow(app, root + aircraftListFile,
                            {cargo.Name, aircraftRootOf(root) + cargo.FolderName + "\\"}));
  ReportError(app);
}

void markPlace(App& app, const Cargo& cargo, PlaceBit place) {
  auto& list = app.frmMain.lstAircraft;
  if (const int row = list.rowOf(cargo.row); row != 0)
    list.setSmallIcon(row, placeIcon(cargo.Mask | place));
}

void toHangar(App& app, Cargo& cargo) {
  const std::string& hangar = cargo.HangarDir;
  const std::string aircraft = hangar + "Aircraft\\" + cargo.FolderName;
  const std::string main = hangar + "Main\\" + cargo.FolderName;
  if (!ensureFolder(app, hangar) || !ensureFolder(app, hangar + "Aircraft") ||
      !ensureFolder(app, hangar + "Main") || !ensureFolder(app, aircraft, &cargo.Added) ||
      !ensureFolder(app, main))
    return;
  for (const char* shared : sharedFolders)
    if (!ensureFolder(app, main + "\\" + shared)) return;

  WalkTree(app, cargo.Folder, aircraft + "\\", WalkCopy, false);
  appendToOtherList(app, cargo, hangar);
  markPlace(app, cargo, inHangar);
}

// Merges an aircraft folder and a main folder into the simulator.
void copyToSimulator(App& app, const Cargo& cargo, const std::string& aircraft,
                     const std::string& main) {
  WalkTree(app, aircraft, aircraftRootOf(cargo.FSRoot) + cargo.FolderName, WalkCopy, false);
  for (const char* shared : sharedFolders)
    WalkTree(app, main + shared, cargo.FSRoot + shared, WalkCopy, false);
}

bool unpackPackage(App& app, const Cargo& cargo) {
  clearWorkingFolders(app);
  app.frmMain.lblStatus.caption = "Prepairing files...";
  ReadAndExtract job(app);
  if (!job.open(cargo.PacksDir + cargo.FolderName + packageEnd) || !job.fits(cargo.FSRoot))
    return false;
  app.frmMain.lblStatus.caption = "Unzipping: " + cargo.FolderName + packageEnd;
  return job.extract(app.InstallTempDir, yieldsAfterExtraction);
}

void toSimulator(App& app, Cargo& cargo) {
  if (!ensureFolder(app, aircraftRootOf(cargo.FSRoot) + cargo.FolderName, &cargo.Added)) return;
  // A Package goes before a folder in the Hangar: compressing has thinned that one out.
  if ((cargo.Mask & inPackage) != 0) {
    if (!unpackPackage(app, cargo)) return;
    copyToSimulator(app, cargo, app.InstallTempDir + "Aircraft\\", app.InstallTempDir + "Main\\");
    emptyWorkingFolder(app);
  } else {
    copyToSimulator(app, cargo, cargo.Folder, cargo.HangarDir + "Main\\" + cargo.FolderName + "\\");
  }
  appendToOtherList(app, cargo, cargo.FSRoot);
  markPlace(app, cargo, inSimulator);
}

}  // namespace

void btnHangar_Click(App& app) {
  const auto& list = app.frmMain.lstAircraft;
  const int row = list.selected();
  if (row == 0) return;
  const std::string folder = list.subItem(row, 1);
  Cargo cargo{app.FSRoot,     app.HangarDir, app.PacksDir,       list.id(row),
              list.text(row), folder,        FolderName(folder), rowMask(app, row)};
  // Without a name of its own the aircraft would be spread over the whole store.
  if (!isElementName(cargo.FolderName)) return;

  const LongOperation busy(app);
  app.error.clear();
  if (inFSView(app))
    toHangar(app, cargo);
  else
    toSimulator(app, cargo);
  app.error.clear();
  app.frmMain.lblStatus.caption = "";
}

}  // namespace skv
