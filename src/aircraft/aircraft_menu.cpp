#include "aircraft/aircraft_menu.h"

#include "aircraft/aircraft_cfg.h"
#include "core/messages.h"

namespace skv {

void mnuListOpen_Click(App& app) {
  const std::string folder = selectedAircraftFolder(app);
  if (!folder.empty()) ShellOpen(app, folder);
}

void mnuListCopy_Click(App& app) {
  const std::string folder = selectedAircraftFolder(app);
  if (!folder.empty()) app.windows.copyText(folder);
}

void mnuListRename_Click(App& app) { app.frmMain.lstAircraft.startLabelEdit(); }

}  // namespace skv
