#include "ui/views.h"

#include <array>
#include <cmath>
#include <span>

#include "aircraft/aircraft_cfg.h"
#include "aircraft/aircraft_views.h"
#include "pictures/picture_commands.h"
#include "scenery/scenery_view.h"

namespace skv {

namespace {

constexpr int leastListHeight = 1000;    // twips
constexpr int leastWindowWidth = 10335;  // twips

void showFrameOf(int index, std::span<ui::Frame* const> frames) {
  if (index < 0 || index >= static_cast<int>(frames.size())) return;
  for (ui::Frame* frame : frames) frame->visible = frame == frames[static_cast<std::size_t>(index)];
}

}  // namespace

void mnuViewRefresh_Click(App& app) {
  if (!app.frmMain.mnuViewFSScenery.checked)
    reloadAircraftList(app);
  else if (mayLeaveSceneries(app))
    mnuViewFSScenery_Click(app);
}

void leaveForScenery(App& app) {
  if (mayLeaveInfo(app) && mayLeaveSceneries(app)) mnuViewFSScenery_Click(app);
}

void leaveForAircraft(App& app, void (*view)(App&)) {
  if (mayLeaveSceneries(app)) view(app);
}

void frameAircraft_DblClick(App& app) {
  if (app.frmMain.mnuViewFSAircraft.checked)
    mnuViewHangar_Click(app);
  else if (app.frmMain.mnuViewHangar.checked)
    leaveForScenery(app);
}

void frameScenery_DblClick(App& app) {
  if (app.frmMain.mnuViewFSScenery.checked) leaveForAircraft(app, mnuViewFSAircraft_Click);
}

void tabAddon_Click(App& app, int index) {
  auto& form = app.frmMain;
  showFrameOf(index, std::array{&form.frameInfo, &form.framePanel, &form.frameSound});
  mnuPic_Closed(app);  // the picture that it was about may be on the other tab
}

void tabACInfo_Click(App& app, int index) {
  auto& form = app.frmMain;
  showFrameOf(index, std::array{&form.frameACInfoGeneral, &form.frameACInfoATC, &form.frameACinfoUI,
                                &form.frameACDescription});
}

void lblSepBar_MouseDown(App& app, ui::MouseButton button) {
  if (button == ui::MouseButton::left) app.SepDragging = true;
}

void lblSepBar_MouseMove(App& app, int y) {
  if (!app.SepDragging) return;
  auto& form = app.frmMain;
  const int upper = form.sceneryHeight + y;
  const int lower = form.libraryHeight - y;
  if (upper < leastListHeight || lower < leastListHeight) return;
  form.sceneryHeight = upper;
  form.libraryHeight = lower;
}

void lblSepBar_MouseUp(App& app, ui::MouseButton button) {
  if (button == ui::MouseButton::left) app.SepDragging = false;
}

void Form_Resize(App& app) {
  auto& form = app.frmMain;
  if (app.LayoutAspect == 0 || form.windowState == ui::Form::State::minimised) return;
  const auto followWidth = [&] {
    form.height = static_cast<int>(std::lround(form.width / app.LayoutAspect));
  };
  if (form.windowState == ui::Form::State::normal) followWidth();
  if (form.width < leastWindowWidth) {
    form.width = leastWindowWidth;
    followWidth();
  }
  app.LayoutWidth = form.width;
  app.LayoutHeight = form.height;
}

}  // namespace skv
