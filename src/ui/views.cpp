#include "ui/views.h"

#include <array>
#include <cmath>
#include <span>

#include "aircraft/aircraft_cfg.h"
#include "aircraft/list_files.h"
#include "core/utilities.h"

namespace skv {

namespace {

constexpr int leastListHeight = 1000;    // twips
constexpr int leastWindowWidth = 10335;  // twips

// What tells the simulator's aircraft view from the Hangar's.
struct AircraftView {
  ui::MenuItem ui::FrmMain::*entry;
  const char* frameCaption;
  ui::Colour frameColour;
  const char* hangarCaption;
  int App::*selIndex;         // the remembered row of this view
  int App::*leavingSelIndex;  // where the row of the view being left is noted
};

constexpr AircraftView fsView{&ui::FrmMain::mnuViewFSAircraft,
                              "Aircraft: FS 2002",
                              65535,
                              fsViewCaption,
                              &App::FSSelIndex,
                              &App::HangarSelIndex};
constexpr AircraftView hangarView{
    &ui::FrmMain::mnuViewHangar, "Aircraft: HANGAR",   65280,
    hangarViewCaption,           &App::HangarSelIndex, &App::FSSelIndex};

void showFrames(App& app, bool aircraft) {
  app.frmMain.frameAircraft.visible = aircraft;
  app.frmMain.frameAddon.visible = aircraft;
  app.frmMain.frameScenery.visible = !aircraft;
}

// Enables what the kind of view offers. An entry without an operation stays disabled.
void setMenus(App& app, bool aircraft) {
  auto& form = app.frmMain;
  for (ui::MenuItem* entry : {&form.mnuFileInstallAC, &form.mnuViewCfg, &form.mnuFileSynchPN,
                              &form.mnuFileImportAC, &form.mnuFileImportPN, &form.mnuFileImportSN})
    entry->enabled = aircraft && entry->available();
  for (ui::MenuItem* entry : {&form.mnuFileInstallSC, &form.mnuFileImportSceneries})
    entry->enabled = !aircraft && entry->available();
}

void checkEntry(App& app, const ui::MenuItem& current) {
  auto& form = app.frmMain;
  for (ui::MenuItem* entry : {&form.mnuViewFSAircraft, &form.mnuViewHangar, &form.mnuViewFSScenery})
    entry->checked = entry == &current;
}

// The Hangar with its two own folders, which the installer fills but does not make.
void makeHangar(App& app) {
  if (app.HangarDir.empty()) return;
  if (!PathExists(app.files(), app.HangarDir)) MakePath(app.files(), app.HangarDir);
  for (const char* folder : {"aircraft", "Main"})
    app.files().makeFolder(app.HangarDir + folder).skipped();
}

void showAircraftView(App& app, const AircraftView& view, const std::string& root) {
  auto& form = app.frmMain;
  showFrames(app, true);
  setMenus(app, true);
  app.windows.yield();

  if (form.lstAircraft.count() > 0) app.*view.leavingSelIndex = form.lstAircraft.selected();
  app.ListDir = root;
  app.ACRoot = root + "aircraft\\";
  if (&view == &hangarView) makeHangar(app);

  form.frameAircraft.caption = view.frameCaption;
  form.frameAircraft.colour = view.frameColour;
  form.btnHangar.caption = view.hangarCaption;
  checkEntry(app, form.*view.entry);
  form.imgAircraft.picture = "";
  form.imgPanel.picture = "";

  LoadACList(app);
  LoadPNList(app);
  LoadSNList(app);
  if (const int remembered = std::min(app.*view.selIndex, form.lstAircraft.count());
      remembered > 0) {
    form.lstAircraft.select(remembered);
    form.lstAircraft.ensureVisible(remembered);
  }
  lstAircraft_Click(app);
}

void showFrameOf(int index, std::span<ui::Frame* const> frames) {
  if (index < 0 || index >= static_cast<int>(frames.size())) return;
  for (ui::Frame* frame : frames) frame->visible = frame == frames[static_cast<std::size_t>(index)];
}

}  // namespace

void mnuViewFSAircraft_Click(App& app) { showAircraftView(app, fsView, app.FSRoot); }
void mnuViewHangar_Click(App& app) { showAircraftView(app, hangarView, app.HangarDir); }

void mnuViewFSScenery_Click(App& app) {
  showFrames(app, false);
  setMenus(app, false);
  checkEntry(app, app.frmMain.mnuViewFSScenery);
  app.windows.yield();
}

void frameAircraft_DblClick(App& app) {
  if (app.frmMain.mnuViewFSAircraft.checked)
    mnuViewHangar_Click(app);
  else if (app.frmMain.mnuViewHangar.checked)
    mnuViewFSScenery_Click(app);
}

void frameScenery_DblClick(App& app) {
  if (app.frmMain.mnuViewFSScenery.checked) mnuViewFSAircraft_Click(app);
}

void tabAddon_Click(App& app, int index) {
  auto& form = app.frmMain;
  showFrameOf(index, std::array{&form.frameInfo, &form.framePanel, &form.frameSound});
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
