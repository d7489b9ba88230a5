#include "core/delete_folder.h"

#include "base/paths.h"
#include "base/text.h"
#include "core/disk_queries.h"
#include "core/messages.h"
#include "core/remove_whole.h"
#include "core/staged_folder.h"

namespace skv {

namespace {

// Takes its name off the folder, where that can be done in one step. Answers where it is then.
std::string setAside(App& app, const std::string& path, const std::string& root) {
  std::string aside = root + StagedFolder::name;
  const bool liesInRoot = isOrHolds(root, path) && !isOrHolds(path, root);
  if (!liesInRoot || isOrHolds(aside, path) || app.files().isLink(path)) return path;
  if (!StagedFolder::clear(app, root).ok() || !app.files().rename(path, aside).ok()) return path;
  return aside;
}

// Speaks of the folder by the name that users know.
void useOwnName(WalkReport& report, const std::string& aside, const std::string& path) {
  const auto renamed = [&](std::string text) {
    for (auto at = text.find(aside); at != std::string::npos;
         at = text.find(aside, at + path.size()))
      text.replace(at, aside.size(), path);
    return text;
  };
  report.where = renamed(report.where);
  if (!report.first.ok())
    report.first = Outcome::withText(report.first.number(), renamed(report.first.description()));
}

}  // namespace

WalkReport deleteFolder(App& app, const std::string& folder, const std::string& root) {
  FileSystem& files = app.files();
  const std::string path = withoutBackslash(folder);
  WalkReport report;
  if (const auto found = files.attributes(path); !found.ok()) {
    if (presenceBy(found.outcome()) == Presence::unknown) report.note(found.outcome(), path);
    return report;
  }
  const std::string place = setAside(app, path, root);
  report = WalkTree(app, place, "", WalkDelete, true);
  // Hidden entries, which a walk leaves alone.
  if (report.complete()) report.note(removeWhole(app, place), place);
  if (place == path || report.complete()) return report;
  files.rename(place, path).skipped();
  useOwnName(report, place, path);
  return report;
}

WalkReport deleteAddon(App& app, const AddonFiles& files) {
  WalkReport report;
  for (const FolderUse& use : files.folders)
    if (report.complete()) report += deleteFolder(app, use.folder, use.store);
  if (!report.complete() || files.package.empty()) return report;
  app.files().setAttributes(files.package, {}).skipped();
  report.note(app.files().deleteFile(files.package), files.package);
  return report;
}

ui::Answer packageGoesToo(App& app, const std::string& package) {
  const auto found = app.files().attributes(package);
  if (!found.ok()) {
    if (presenceBy(found.outcome()) == Presence::absent) return ui::Answer::no;
    tellFailure(app, "Nothing was deleted. \"" + package + "\" cannot be looked at.",
                found.outcome());
    return ui::Answer::cancel;
  }
  if (found.value().folder) return ui::Answer::no;
  return app.windows.messageBox({.text = "There's a Package \"" + fileName(package) +
                                         "\" as well!\r\nDo you want to delete it?",
                                 .icon = ui::BoxIcon::question,
                                 .buttons = ui::BoxButtons::yesNoCancel,
                                 .defaultButton = ui::DefaultButton::no});
}

}  // namespace skv
