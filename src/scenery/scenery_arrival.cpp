#include "scenery/scenery_arrival.h"

#include "core/disk_queries.h"
#include "core/stores.h"

namespace skv {

std::string countedFiles(int files) {
  return std::to_string(files) + (files == 1 ? " file" : " files");
}

double sizeOf(App& app, const std::string& folder) {
  app.SizeTotal = 0;
  WalkTree(app, folder, "", WalkSize, true).skipped();
  return app.SizeTotal;
}

double withMargin(double size) { return size + size / 10; }

void tellNoRoom(App& app, const std::string& library) {
  app.windows.messageBox({"Insufficient diskspace on \"" + library + "\"!"});
}

void makeLibraryRoots(App& app, const std::string& library) {
  if (!folderExists(app.files(), library)) return;
  for (const std::string& root : {sceneryRootOf(library), mainRootOf(library)})
    MakePath(app.files(), root);
}

bool arrive(App& app, StagedFolder& folder, const std::string& source, const std::string& library,
            WalkReport& report) {
  report = WalkTree(app, source, folder.path(), WalkCopy, true);
  if (report.complete()) report.note(app.files().flushDisk(library), library);
  if (report.complete()) {
    WalkReport settled = folder.settleOrMerge();
    settled.done = 0;  // the same files again
    report += settled;
  }
  if (report.complete()) report.note(app.files().flushDisk(library), library);
  if (!report.complete()) folder.clear().skipped();
  return report.complete();
}

}  // namespace skv
