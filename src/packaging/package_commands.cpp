#include "packaging/package_commands.h"

#include <optional>
#include <string>

#include "aircraft/aircraft_views.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/view.h"
#include "packaging/package_job.h"

namespace skv {

namespace {

// The row of an aircraft of that folder name, 0 for none: that in the Hangar's own folder, which
// transfers fill, before one that lies deeper.
int rowOfName(App& app, const std::string& name) {
  const auto& list = app.frmMain.lstAircraft;
  if (const int row = list.findSubItem1(app.ACRoot + name + "\\"); row != 0) return row;
  for (int row = 1; row <= list.count(); ++row)
    if (equalsIgnoringCase(FolderName(withBackslash(list.subItem(row, 1))), name)) return row;
  return 0;
}

// Only the Hangar has Packages. Shows it with the aircraft selected that was selected in the
// simulator's view, and asks whether this one is meant.
bool goesOnInHangar(App& app, const char* verb) {
  auto& form = app.frmMain;
  auto& list = form.lstAircraft;
  const std::string title = list.text(list.selected());
  const std::string name = FolderName(withBackslash(list.subItem(list.selected(), 1)));
  mnuViewHangar_Click(app);
  if (inFSView(app) || form.frameScenery.visible) return false;
  const int row = rowOfName(app, name);
  list.select(row);
  selectAircraft(app, "", row);
  if (list.selected() != row) return false;
  if (row == 0) {
    form.lblStatus.notice = "\"" + title + "\" is not in the Hangar, which alone has Packages";
    return false;
  }
  return app.windows.messageBox(
             {.text = std::string("Only the Hangar has Packages. Do you want to ") + verb +
                      " this aircraft in the Hangar?\r\n\r\n\"" + list.text(row) + "\"\r\n" +
                      list.subItem(row, 1),
              .icon = ui::BoxIcon::question,
              .buttons = ui::BoxButtons::yesNo,
              .defaultButton = ui::DefaultButton::no}) == ui::Answer::yes;
}

// The job for the selected row; none where there is nothing to do.
std::optional<PackageJob> jobOfSelection(App& app, const char* verb) {
  const bool scenery = app.frmMain.frameScenery.visible;
  const PackageKind& kind = scenery ? sceneryKind : aircraftKind;
  if ((app.frmMain.*kind.list).selected() == 0) {
    app.frmMain.lblStatus.notice =
        scenery ? "No scenery of the library is selected" : "No aircraft is selected";
    return {};
  }
  if (app.InstallTempDir.size() < 3 || app.InstallTempDir[1] != ':') {
    app.windows.messageBox({"This feature does not support UNC!", ui::BoxIcon::exclamation});
    return {};
  }
  if (!scenery && inFSView(app) && !goesOnInHangar(app, verb)) return {};
  return std::optional<PackageJob>(std::in_place, app, kind);
}

}  // namespace

void mnuFilePackage_Click(App& app) {
  if (auto job = jobOfSelection(app, "compress")) job->compress();
}

void mnuFileUnpackage_Click(App& app) {
  if (auto job = jobOfSelection(app, "unpack")) job->uncompress();
}

}  // namespace skv
