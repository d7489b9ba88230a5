#include "packaging/archive_comparison.h"

#include <algorithm>
#include <map>
#include <utility>

#include "base/paths.h"
#include "base/text.h"
#include "core/collect_files.h"
#include "core/disk_queries.h"
#include "core/same_content.h"

namespace skv {

namespace {

using FilesByName = std::multimap<std::string, std::string>;  // name in upper case, path

Outcome collect(App& app, const std::string& folder, FilesByName& found) {
  std::vector<std::string> names;
  const WalkReport report = collectFiles(app, folder, names);
  for (const std::string& name : names)
    found.emplace(upper(fileName(name)), withBackslash(folder) + name);
  if (report.stopped) return Outcome::failure(err::cancelled);
  return report.first;
}

bool isHidden(const std::string& path) {
  return path.starts_with('.') || path.find("\\.") != std::string::npos;
}

}  // namespace

Result<std::vector<std::string>> lackedEntries(App& app, const std::string& archive,
                                               const std::vector<std::string>& folders,
                                               const std::string& package) {
  std::vector<std::string> lacked;
  if (!package.empty() && presenceOf(app.files(), package) != Presence::absent) {
    const auto same = sameContent(app.files(), archive, package);
    if (!same.ok()) return same.outcome();
    if (same.value()) return lacked;
  }
  FilesByName standing;
  for (const std::string& folder : folders)
    if (Outcome collected = collect(app, folder, standing); !collected.ok()) return collected;
  const auto zip = app.platform.zip.load(app.files());
  if (Outcome opened = zip->setArchivefile(archive); !opened.ok()) return opened;
  for (const ZipEntry& entry : zip->entries()) {
    std::string path = composed(entry.Filename);
    std::ranges::replace(path, '/', '\\');
    if (path.ends_with('\\') || isHidden(path)) continue;
    const auto [first, last] = standing.equal_range(upper(fileName(path)));
    const bool stands = std::any_of(first, last, [&](const auto& file) {
      return zip->holdsFile(entry.Filename, file.second).ok();
    });
    if (!stands) lacked.push_back(path);
    app.windows.yield();
    if (app.stopRequested) return Outcome::failure(err::cancelled);
  }
  return lacked;
}

}  // namespace skv
