#include "core/delete_folder.h"

#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/remove_whole.h"

namespace skv {

WalkReport deleteFolder(App& app, const std::string& folder) {
  const std::string path = withoutBackslash(folder);
  WalkReport report;
  const auto found = app.files().attributes(path);
  if (!found.ok() && presenceBy(found.outcome()) == Presence::absent) return report;
  report = WalkTree(app, folder, "", WalkDelete, true);
  // Hidden entries, which a walk leaves alone.
  if (report.complete()) report.note(removeWhole(app, path), path);
  return report;
}

}  // namespace skv
