#include "aircraft/aircraft_views.h"

#include <algorithm>

#include "aircraft/aircraft_cfg.h"
#include "aircraft/list_files.h"
#include "core/disk_queries.h"
#include "core/stores.h"
#include "core/view.h"

namespace skv {

namespace {

// The Hangar with its two own folders, which the installer fills but does not make.
void makeHangar(App& app) {
  if (app.HangarDir.empty()) return;
  if (!PathExists(app.files(), app.HangarDir)) MakePath(app.files(), app.HangarDir);
  for (const std::string& folder : {aircraftRootOf(app.HangarDir), mainRootOf(app.HangarDir)})
    app.files().makeFolder(folder).skipped();
}

int& rememberedRow(App& app, View view) {
  return view == View::hangar ? app.HangarSelIndex : app.FSSelIndex;
}

void showAircraftView(App& app, View view) {
  auto& form = app.frmMain;
  if (form.lstAircraft.count() > 0)
    rememberedRow(app, app.aircraftView) = form.lstAircraft.selected();
  showView(app, view);
  app.windows.yield();

  app.ListDir = view == View::hangar ? app.HangarDir : app.FSRoot;
  app.ACRoot = aircraftRootOf(app.ListDir);
  if (view == View::hangar) makeHangar(app);
  form.imgAircraft.picture = "";
  form.imgPanel.picture = "";

  LoadACList(app);
  LoadPNList(app);
  LoadSNList(app);
  if (const int remembered = std::min(rememberedRow(app, view), form.lstAircraft.count());
      remembered > 0) {
    form.lstAircraft.select(remembered);
    form.lstAircraft.ensureVisible(remembered);
  }
  lstAircraft_Click(app);
}

}  // namespace

void mnuViewFSAircraft_Click(App& app) { showAircraftView(app, View::fsAircraft); }
void mnuViewHangar_Click(App& app) { showAircraftView(app, View::hangar); }

}  // namespace skv
