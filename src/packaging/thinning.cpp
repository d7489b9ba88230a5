#include "packaging/thinning.h"

#include "base/paths.h"
#include "core/collect_files.h"
#include "core/disk_queries.h"

namespace skv {

WalkReport Thinning::collect() {
  WalkReport report;
  found_.clear();
  leads_.clear();
  for (const auto& [folder, part] : parts_) {
    std::vector<std::string> files;
    report += collectFiles(app_, folder, files);
    for (const std::string& file : files)
      if (!staysWhenThinned(fileName(file)) && leadsHere(folderAbove(folder + file), report))
        found_.push_back({folder + file, part + file});
  }
  return report;
}

WalkReport Thinning::verify(const std::string& package) {
  WalkReport report;
  const auto zip = app_.platform.zip.load(files_);
  if (!report.note(zip->setArchivefile(package), package)) return report;
  for (File& file : found_) {
    const auto state = files_.fileState(file.path);
    if (!report.note(state.ok() ? zip->holdsFile(file.entry, file.path) : state.outcome(),
                     file.path))
      return report;
    file.state = state.value();
    app_.windows.yield();
    report.stopped = report.stopped || app_.stopRequested;
    if (report.stopped) return report;
  }
  for (const File& file : found_)
    if (!report.note(unchanged(file), file.path)) break;
  return report;
}

bool Thinning::leadsHere(const std::string& folder, WalkReport& report) {
  if (leads_.empty())
    for (const Part& part : parts_) leads_[folderAbove(part.folder)] = true;
  if (const auto known = leads_.find(folder); known != leads_.end()) return known->second;
  const auto link = isLinkForCertain(files_, withoutBackslash(folder));
  if (!link.ok()) report.note(link.outcome(), folder);
  const bool leads = link.ok() && !link.value() && leadsHere(folderAbove(folder), report);
  return leads_[folder] = leads;
}

Outcome Thinning::unchanged(const File& file) const {
  const auto now = files_.fileState(file.path);
  if (!now.ok()) return now.outcome();
  if (now.value().modified == file.state.modified && now.value().length == file.state.length)
    return {};
  return Outcome::withText(err::pathFileAccess, "\"" + file.path + "\" has changed meanwhile.");
}

WalkReport Thinning::thin() {
  WalkReport report;
  leads_.clear();
  for (const File& file : found_) {
    if (!leadsHere(folderAbove(file.path), report)) continue;
    if (report.note(unchanged(file), file.path)) {
      files_.setAttributes(file.path, {}).skipped();
      if (report.note(files_.deleteFile(file.path), file.path)) ++report.done;
    }
    app_.windows.yield();
  }
  return report;
}

}  // namespace skv
