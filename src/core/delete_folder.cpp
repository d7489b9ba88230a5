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

void offerToDeletePackage(App& app, const std::string& package, WalkReport& report) {
  const auto found = app.files().attributes(package);
  if (!found.ok()) {
    if (presenceBy(found.outcome()) == Presence::unknown) report.note(found.outcome(), package);
    return;
  }
  if (found.value().folder) return;
  if (app.windows.messageBox({.text = "There's a Package \"" + fileName(package) +
                                      "\" as well!\r\nDo you want to delete it?",
                              .icon = ui::BoxIcon::question,
                              .buttons = ui::BoxButtons::yesNo,
                              .defaultButton = ui::DefaultButton::yes}) == ui::Answer::yes)
    report.note(app.files().deleteFile(package), package);
}

}  // namespace skv
