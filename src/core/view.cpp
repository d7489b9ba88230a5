#include "core/view.h"

namespace skv {

namespace {

constexpr ui::Colour yellow = 65535, green = 65280;  // 0xBBGGRR

void setCaptions(App& app, View view) {
  auto& form = app.frmMain;
  app.aircraftView = view;
  const bool hangar = view == View::hangar;
  form.frameAircraft.caption = hangar ? "Aircraft: HANGAR" : "Aircraft: FS 2002";
  form.frameAircraft.colour = hangar ? green : yellow;
  form.btnHangar.caption = hangar ? "To FS2002..." : "To Hangar...";
  form.mnuListHangar.caption = form.btnHangar.caption;
}

}  // namespace

void showView(App& app, View view) {
  auto& form = app.frmMain;
  ++app.viewSwitches;
  const bool aircraft = view != View::scenery;
  form.frameAircraft.visible = aircraft;
  form.frameAddon.visible = aircraft;
  form.frameScenery.visible = !aircraft;
  for (ui::MenuItem* entry : {&form.mnuFileInstallAC, &form.mnuViewCfg, &form.mnuFileSynchPN,
                              &form.mnuFileImportAC, &form.mnuFileImportPN, &form.mnuFileImportSN})
    entry->enabled = aircraft;
  for (ui::MenuItem* entry : {&form.mnuFileInstallSC, &form.mnuFileImportSceneries})
    entry->enabled = !aircraft;
  form.mnuViewFSAircraft.checked = view == View::fsAircraft;
  form.mnuViewHangar.checked = view == View::hangar;
  form.mnuViewFSScenery.checked = view == View::scenery;
  if (aircraft) setCaptions(app, view);
}

}  // namespace skv
