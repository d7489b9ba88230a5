#include "core/shared_folders.h"

#include "core/disk_queries.h"

namespace skv {

WalkReport fillSharedFolder(App& app, const std::string& source, const std::string& shared,
                            bool overwrite) {
  WalkReport report;
  const auto listing = app.files().list(source);
  if (listing.ok() && !listing.value().empty() &&
      presenceOf(app.files(), shared) == Presence::absent)
    report.note(app.files().makeFolder(shared), shared);
  report += WalkTree(app, source, shared, WalkCopy, overwrite);
  return report;
}

}  // namespace skv
