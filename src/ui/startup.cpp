#include "ui/startup.h"

#include <cstdio>

#include "aircraft/aircraft_cfg.h"
#include "aircraft/aircraft_views.h"
#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/messages.h"
#include "core/settings_keys.h"
#include "core/stores.h"
#include "core/walktree.h"
#include "ui/settings.h"
#include "ui/views.h"

namespace skv {

namespace {

// Yields by which the program paces itself; they take as long as the event loop takes.
constexpr int yieldsBeforeSplash = 100;
constexpr int yieldsForSplash = 30000;
constexpr int yieldsAtEnd = 1000;

// The first thing a start does is to empty the working folder of what a failed job left in it.
bool prepareWorkingFolder(App& app) {
  if (!PathExists(app.files(), app.InstallTempDir)) {
    app.step(app.files().makeFolder(app.InstallTempDir));
    if (ReportError(app)) return false;
  }
  app.frmMain.lblStatus.caption = "Cleaning temporary folder...";
  WalkTree(app, app.InstallTempDir, "", WalkDelete, true);
  app.frmMain.lblStatus.caption = "";
  app.error.clear();
  return true;
}

void showSplash(App& app) {
  app.frmSplash.lblVersion.caption = "Version " + app.AppVersionText;
  app.windows.show(app.frmSplash, &app.frmMain);
  ui::yieldTimes(app.windows, yieldsForSplash);
}

void restoreWindow(App& app) {
  auto& form = app.frmMain;
  form.visible = false;
  app.LayoutWidth = form.width;
  app.LayoutHeight = form.height;
  app.LayoutAspect = static_cast<double>(app.LayoutWidth) / app.LayoutHeight;

  const auto stored = [&app](const Setting& key) {
    return static_cast<int>(val(readSetting(app, key)));
  };
  if (readSetting(app, setting::MainTop).empty()) return;
  form.top = stored(setting::MainTop);
  form.left = stored(setting::MainLeft);
  form.width = stored(setting::MainWidth);
  Form_Resize(app);
  const int state = stored(setting::MainState);
  if (state >= 0 && state <= 2) form.windowState = static_cast<ui::Form::State>(state);
}

void readSettings(App& app) {
  app.FSRoot = readSetting(app, setting::FSRoot);
  app.HangarDir = readSetting(app, setting::HangarDir);
  app.PacksDir = readSetting(app, setting::PacksDir);
  app.PanelsDir = readSetting(app, setting::PanelsDir);
  app.LastZIPDir = readSetting(app, setting::LastZIPDir);
  app.SceneryLib = readSetting(app, setting::SceneryLib);
  app.SceneryPacksPath = readSetting(app, setting::SceneryPacksPath, app.PacksDir + "Scenery\\");
}

// Without a Packages folder the path would be a stray one in the current folder.
void makeSceneryPacksFolder(App& app) {
  const std::string& path = app.SceneryPacksPath;
  if (path.find(':') == std::string::npos || PathExists(app.files(), path)) return;
  MakePath(app.files(), path);
}

// The settings dialog in place of the main window.
void askForSettings(App& app) {
  app.frmMain.visible = false;
  runSettings(app);
  app.frmMain.visible = false;
}

void completeSettings(App& app) {
  if (app.FSRoot.empty() || readSetting(app, setting::AppVersion) != app.AppVersionText) {
    askForSettings(app);
    if (app.ending) return;
    writeSetting(app, setting::AppVersion, app.AppVersionText).skipped();
  }
  if (app.HangarDir.empty() && !app.ending) askForSettings(app);
  if (app.PacksDir.empty() && !app.ending) askForSettings(app);
}

// The lists once lay beside the program. The old file goes only when its copy stands.
void moveOldLists(App& app) {
  if (app.FSRoot.empty()) return;
  FileSystem& files = app.files();
  for (const char* name : {aircraftListFile, panelListFile, soundListFile}) {
    if (!PathExists(files, app.AppDir + name)) continue;
    if (app.step(files.copyFile(app.AppDir + name, app.FSRoot + name)))
      app.step(files.deleteFile(app.AppDir + name));
  }
}

void selectLastAircraft(App& app) {
  auto& list = app.frmMain.lstAircraft;
  const double last = val(readSetting(app, setting::LastACSelected));
  if (last < 1 || last > list.count()) return;
  const int row = static_cast<int>(last);
  list.select(row);
  list.ensureVisible(row);
  lstAircraft_Click(app);
}

}  // namespace

std::string versionText() {
  char text[32];
  std::snprintf(text, sizeof text, "%d.%02d.%04d", SKYVAULT_VERSION_MAJOR, SKYVAULT_VERSION_MINOR,
                SKYVAULT_VERSION_REVISION);
  return text;
}

void Form_Load(App& app) {
  auto& form = app.frmMain;
  app.starting = true;
  app.AppDir = withBackslash(app.platform.environment.programFolder);
  app.TempDir = withBackslash(app.platform.environment.TEMP);
  app.InstallTempDir = app.TempDir + "SKVInstallTemp\\";
  if (!prepareWorkingFolder(app)) {
    app.starting = false;
    form.visible = true;
    return;
  }
  app.SenderIdentity.FirstName = readSetting(app, setting::FirstName);
  app.SenderIdentity.LastName = readSetting(app, setting::LastName);
  app.AppVersionText = versionText();
  form.caption = std::string(ui::programTitle) + " - " + app.AppVersionText;
  ui::yieldTimes(app.windows, yieldsBeforeSplash);
  showSplash(app);
  restoreWindow(app);
  form.tabAddon.tabs = std::vector<std::string>{"Info", "Panel", "Sound"};
  form.tabACInfo.tabs = std::vector<std::string>{"General", "ATC", "UI", "Description"};

  readSettings(app);
  makeSceneryPacksFolder(app);
  completeSettings(app);
  if (app.ending) return;
  moveOldLists(app);
  app.error.clear();
  mnuViewFSAircraft_Click(app);
  selectLastAircraft(app);

  app.starting = false;
  form.visible = true;
  app.windows.unload(app.frmSplash);
}

void Form_Unload(App& app) {
  auto& form = app.frmMain;
  app.ending = true;
  if (form.lstAircraft.count() > 1)
    writeSetting(app, setting::LastACSelected, std::to_string(form.lstAircraft.selected()))
        .skipped();
  writeSetting(app, setting::MainState, std::to_string(static_cast<int>(form.windowState.get())))
      .skipped();
  if (form.windowState != ui::Form::State::normal) form.windowState = ui::Form::State::normal;
  writeSetting(app, setting::MainTop, std::to_string(form.top)).skipped();
  writeSetting(app, setting::MainLeft, std::to_string(form.left)).skipped();
  writeSetting(app, setting::MainWidth, std::to_string(form.width)).skipped();
  form.visible = false;
  app.windows.unload(app.frmSplash);
  app.windows.unload(app.frmSettings);
  ui::yieldTimes(app.windows, yieldsAtEnd);
}

}  // namespace skv
