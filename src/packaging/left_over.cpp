#include "packaging/left_over.h"

#include <utility>

#include "base/paths.h"
#include "core/collect_files.h"
#include "core/disk_queries.h"
#include "core/folder_guard.h"
#include "core/remove_whole.h"

namespace skv {

namespace {

constexpr std::string_view embeddedFolder = "SKV";  // see addon_archive.h

std::string rootOf(const App& app) { return app.TempDir + "SKVLeftOver\\"; }

std::string embeddedName(const std::string& name) {
  return name.starts_with(embeddedFolder) ? name.substr(embeddedFolder.size()) : name;
}

// The path that a file of the working folder has in the user's archive.
std::string pathInArchive(const App& app, const std::string& path) {
  std::string rest = path.substr(app.InstallTempDir.size());
  const bool embedded = rest.starts_with('_');
  rest.erase(0, rest.find('\\') + 1);
  return embedded ? embeddedName(rest) : rest;
}

}  // namespace

LeftOver::LeftOver(App& app, std::string addonName) : app_(app), addonName_(std::move(addonName)) {}

Outcome LeftOver::begin() {
  if (!folder_.empty()) return {};
  const std::string root = rootOf(app_);
  // A link there would lead the files, and the next start's clean-up, elsewhere.
  if (Outcome may = mayBeEmptied(app_, root); !may.ok()) return may;
  MakePath(app_.files(), withoutBackslash(root));
  const std::string folder = freePath(app_.files(), root, addonName_);
  Outcome made = app_.files().makeFolder(folder);
  if (made.ok()) folder_ = folder + "\\";
  return made;
}

void LeftOver::note(const std::string& name) {
  ++count_;
  names_ += name + "\r\n";
}

Outcome LeftOver::take(const std::string& path) {
  if (Outcome begun = begin(); !begun.ok()) return begun;
  const std::string name = pathInArchive(app_, path), place = folder_ + name;
  MakePath(app_.files(), withoutBackslash(folderAbove(place)));
  Outcome moved = app_.files().rename(path, place);
  if (moved.ok()) note(name);
  return moved;
}

WalkReport LeftOver::takeRest() {
  WalkReport report;
  // A link that has come in its place would have files of others taken for the archive's.
  if (!report.note(mayBeEmptied(app_, app_.InstallTempDir), app_.InstallTempDir)) return report;
  const auto folders = app_.files().list(app_.InstallTempDir, FileSystem::Entries::all);
  if (!report.note(folders.outcome(), app_.InstallTempDir)) return report;
  for (const FolderEntry& run : folders.value()) {
    if (!run.folder) continue;
    const std::string folder = app_.InstallTempDir + run.name + "\\";
    if (!run.name.starts_with('_')) {
      report += takeFolder(folder, "");
      continue;
    }
    const auto embedded = app_.files().list(folder, FileSystem::Entries::all);
    if (!report.note(embedded.outcome(), folder)) continue;
    for (const FolderEntry& one : embedded.value())
      report += takeFolder(folder + one.name + "\\", embeddedName(one.name) + "\\");
  }
  return report;
}

WalkReport LeftOver::takeFolder(const std::string& folder, const std::string& part) {
  std::vector<std::string> files;
  WalkReport report = collectFiles(app_, folder, files, OnStop::goOn);
  if (files.empty() || !report.note(begin(), folder)) return report;
  MakePath(app_.files(), withoutBackslash(folder_ + part));
  report += WalkTree(app_, folder, folder_ + part, WalkMove, true, OnStop::goOn);
  for (const std::string& file : files) note(part + file);
  return report;
}

void LeftOver::discard() {
  if (!folder_.empty()) removeWhole(app_, folder_).skipped();
  folder_.clear();
}

void clearLeftOver(App& app) {
  const std::string root = rootOf(app);
  if (presenceOf(app.files(), root) == Presence::there && mayBeEmptied(app, root).ok())
    removeWhole(app, root).skipped();
}

}  // namespace skv
