#include "ui/startup.h"

#include <algorithm>
#include <cstdio>

#include "aircraft/aircraft_cfg.h"
#include "aircraft/aircraft_views.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/disk_queries.h"
#include "core/long_operation.h"
#include "core/messages.h"
#include "core/settings_keys.h"
#include "core/staged_folder.h"
#include "core/stores.h"
#include "core/working_folder.h"
#include "packaging/left_over.h"
#include "scenery/scenery_view.h"
#include "ui/dialogs/dir_select.h"
#include "ui/help.h"
#include "ui/list_memory.h"
#include "ui/move_packages.h"
#include "ui/settings.h"
#include "ui/views.h"

namespace skv {

namespace {

// Yields by which the program paces itself; they take as long as the event loop takes.
constexpr int yieldsBeforeSplash = 100;
constexpr int yieldsForSplash = 30000;
constexpr int yieldsAtEnd = 1000;

bool hasDrive(const FileSystem& files) {
  for (char letter = 'A'; letter <= 'Z'; ++letter)
    if (files.attributes(std::string{letter, ':', '\\'}).ok()) return true;
  return false;
}

constexpr const char* noDrive =
    "There is no drive, so there is no place for a simulator.\r\n\r\nFS Skyvault looks for the "
    "folder of drives that Wine keeps, with links such as c: and d: in it:\r\n"
    "1. the one that the variable SKYVAULT_DRIVES names,\r\n"
    "2. dosdevices in the folder that the variable WINEPREFIX names,\r\n"
    "3. ~/.wine/dosdevices.";

// A folder may stand and take nothing, as on a disk that can only be read.
Outcome takesFiles(FileSystem& files, const std::string& folder) {
  const std::string probe = folder + "probe";
  Outcome made = files.makeFolder(probe);
  if (made.ok()) files.removeFolder(probe).skipped();
  return made;
}

// Answers the archives that are kept.
Result<std::vector<std::string>> workIn(App& app, const std::string& folder) {
  app.TempDir = withBackslash(folder);
  app.InstallTempDir = app.TempDir + "SKVInstallTemp\\";
  auto kept = prepareWorkingFolder(app);
  if (!kept.ok()) return kept;
  if (Outcome takes = takesFiles(app.files(), app.InstallTempDir); !takes.ok()) return takes;
  return kept;
}

Result<std::vector<std::string>> workInOwnFolder(App& app) {
  const std::string& own = app.platform.environment.cacheFolder;
  if (!own.empty()) return workIn(app, own);
  return Outcome::withText(
      err::pathFileAccess,
      "It cannot be made, or belongs to somebody else, or no drive reaches it.");
}

// The first thing a start does is to empty the working folder of what a failed job left in it. It
// lies where TEMP says, else in the user's own folder. Without one no job could be done, and the
// start is over.
bool findWorkingFolder(App& app, std::string& keptArchives) {
  const Environment& environment = app.platform.environment;
  app.frmMain.lblStatus.caption = "Cleaning temporary folder...";
  auto kept = environment.TEMP.empty() ? workInOwnFolder(app) : workIn(app, environment.TEMP);
  std::string trouble;
  if (!kept.ok() && !environment.TEMP.empty()) {
    trouble = "FS Skyvault cannot work in the folder that the variable TEMP names:\r\n" +
              environment.TEMP + "\r\n" + kept.outcome().description();
    kept = workInOwnFolder(app);
  }
  app.frmMain.lblStatus.caption = "";
  if (kept.ok()) {
    for (const std::string& archive : kept.value()) keptArchives += "\r\n" + archive;
    if (!trouble.empty())
      app.windows.messageBox({trouble + "\r\n\r\nIt works in this one instead:\r\n" + app.TempDir +
                                  "\r\nTo see this no more, give TEMP another folder, or none.",
                              ui::BoxIcon::exclamation});
    return true;
  }
  if (!hasDrive(app.files())) {
    app.windows.messageBox({noDrive, ui::BoxIcon::exclamation});
    return false;
  }
  if (!trouble.empty()) trouble += "\r\n\r\n";
  app.windows.messageBox({trouble + "FS Skyvault cannot work in its own folder:\r\n" +
                              environment.nativeCacheFolder + "\r\n" +
                              kept.outcome().description() +
                              "\r\n\r\nSo it ends. Let it write there, or name another folder in "
                              "the variable TEMP.",
                          ui::BoxIcon::exclamation});
  return false;
}

void showSplash(App& app) {
  app.frmSplash.lblVersion.caption = "Version " + app.AppVersionText;
  app.windows.show(app.frmSplash, &app.frmMain);
  app.windows.yieldTimes(yieldsForSplash);
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
}

// The settings dialog in place of the main window.
void askForSettings(App& app) {
  app.frmMain.visible = false;
  runSettings(app);
  app.frmMain.visible = false;
}

// Whether stored folders name a drive that was the program's own and is another one now, or none.
bool ownDriveHasGone(const App& app) {
  const std::string old = readSetting(app, setting::OwnDrive);
  return !old.empty() && old != app.platform.environment.ownDrive &&
         std::ranges::any_of(
             std::initializer_list<const std::string*>{&app.FSRoot, &app.HangarDir, &app.PacksDir,
                                                       &app.PanelsDir, &app.SceneryLib},
             [&old](const std::string* folder) {
               return equalsIgnoringCase(folder->substr(0, 2), old + ":");
             });
}

// Before anything is done in those folders, which may be those of another disk: without the user's
// OK nothing is.
void checkOwnDrive(App& app) {
  const std::string& own = app.platform.environment.ownDrive;
  if (ownDriveHasGone(app)) {
    app.windows.messageBox(
        {"Drive " + readSetting(app, setting::OwnDrive) +
             ": was FS Skyvault's own name for the whole of this computer. The drives of Wine have "
             "changed, and it is so no longer.\r\n\r\nFolders on it may be missing now, or be "
             "those of another disk. Please look at them in the settings, which open now. Without "
             "your OK there, FS Skyvault ends.",
         ui::BoxIcon::exclamation});
    askForSettings(app);
    if (readSetting(app, setting::OwnDrive) != own) app.ending = true;
  } else if (readSetting(app, setting::OwnDrive) != own) {
    writeSetting(app, setting::OwnDrive, own).skipped();
  }
}

// Without its folders the program is of no use: a dialog that is closed without them ends it.
void completeSettings(App& app) {
  if (lacksFolders(app) || readSetting(app, setting::AppVersion) != app.AppVersionText) {
    askForSettings(app);
    if (lacksFolders(app)) app.ending = true;
    if (app.ending) return;
    writeSetting(app, setting::AppVersion, app.AppVersionText).skipped();
  }
}

// The lists once lay beside the program. The old file goes only when its copy is on the disk, and
// replaces nothing as long as it cannot be told what stands in its new place.
Outcome moveOldList(FileSystem& files, const std::string& old, const std::string& place) {
  const auto standing = files.attributes(place);
  if (!standing.ok() && presenceBy(standing.outcome()) == Presence::unknown)
    return standing.outcome();
  return files.copyFileDurably(old, place);
}

void moveOldLists(App& app) {
  FileSystem& files = app.files();
  if (app.platform.environment.programFolder.empty() || app.FSRoot.empty() ||
      presenceOf(files, app.FSRoot) != Presence::there)
    return;
  for (const char* name : {aircraftListFile, panelListFile, soundListFile}) {
    const std::string old = app.AppDir + name;
    if (presenceOf(files, old) == Presence::absent) continue;
    if (const Outcome moved = moveOldList(files, old, app.FSRoot + name); !moved.ok()) {
      tellFailure(app,
                  "The list \"" + old + "\" could not be moved to \"" + app.FSRoot +
                      "\". It stays where it is, and the next start tries again.",
                  moved);
    } else if (const Outcome gone = files.deleteFile(old); !gone.ok()) {
      tellFailure(app,
                  "\"" + old + "\" has been copied to \"" + app.FSRoot +
                      "\" and could not be removed. Remove it: each start copies it anew.",
                  gone);
    }
  }
}

// The aircraft that was selected last, whatever row it has now. The number alone is what an older
// version has stored.
void selectLastAircraft(App& app) {
  auto& list = app.frmMain.lstAircraft;
  const std::string folder = readSetting(app, setting::LastACFolder);
  const double last =
      folder.empty() ? val(readSetting(app, setting::LastACSelected)) : list.findSubItem1(folder);
  if (last < 1 || last > list.count()) return;
  const int row = static_cast<int>(last);
  list.select(row);
  list.ensureVisible(row);
  lstAircraft_Click(app);
}

void noteVanishedSimulator(App& app) {
  if (app.FSRoot.empty() || folderExists(app.files(), app.FSRoot)) return;
  app.frmMain.lblStatus.notice = "The simulator's folder " + app.FSRoot +
                                 " is not there. Is its disk connected? The settings (F2) name it.";
}

}  // namespace

std::string versionText() {
  char text[32];
  std::snprintf(text, sizeof text, "%d.%02d.%04d", SKYVAULT_VERSION_MAJOR, SKYVAULT_VERSION_MINOR,
                SKYVAULT_VERSION_REVISION);
  return text;
}

bool settingsCanBeRead(ui::Windowing& windows, SettingsStore& settings) {
  for (;;) {
    const Outcome state = settings.state();
    if (state.ok()) return true;
    if (windows.messageBox(
            {"The settings cannot be read, and nothing will be written over them.\r\n" +
                 state.description() + "\r\n\r\nTry again?",
             ui::BoxIcon::exclamation, ui::BoxButtons::yesNo, ui::programTitle,
             ui::DefaultButton::yes}) != ui::Answer::yes)
      return false;
  }
}

bool Form_Load(App& app) {
  auto& form = app.frmMain;
  app.starting = true;
  app.AppDir = withBackslash(app.platform.environment.programFolder);
  std::string keptArchives;
  if (!findWorkingFolder(app, keptArchives)) {
    app.ending = true;
    return false;
  }
  app.SenderIdentity.FirstName = readSetting(app, setting::FirstName);
  app.SenderIdentity.LastName = readSetting(app, setting::LastName);
  app.AppVersionText = versionText();
  form.caption = std::string(ui::programTitle) + " - " + app.AppVersionText;
  app.windows.yieldTimes(yieldsBeforeSplash);
  showSplash(app);
  restoreWindow(app);
  form.tabAddon.tabs = std::vector<std::string>{"Info", "Panel", "Sound"};
  form.tabACInfo.tabs = std::vector<std::string>{"General", "ATC", "UI", "Description"};

  restoreLists(app);
  readSettings(app);
  checkOwnDrive(app);
  if (!app.ending) completeSettings(app);
  if (app.ending) {
    app.windows.unload(app.frmSplash);
    return true;
  }
  findSceneryPacksPath(app);
  moveOldLists(app);
  clearUnfinishedFolders(app);
  clearLeftOver(app);
  form.lblStatus.caption = "";  // nothing of that is left to do
  mnuViewFSAircraft_Click(app);
  restoreOrder(app);
  selectLastAircraft(app);
  noteVanishedSimulator(app);

  app.starting = false;
  form.visible = true;
  app.windows.unload(app.frmSplash);
  if (!keptArchives.empty())
    app.windows.messageBox(
        {"The program ended before it had installed these archives. They are kept:" + keptArchives,
         ui::BoxIcon::information});
  offerToFinishMove(app);
  if (!app.ending && updateCheckIsDue(app)) mnuHelpDownload_Click(app);
  return true;
}

bool frmMain_QueryUnload(App& app) {
  if (!operationRuns(app)) return mayLeaveInfo(app) && mayLeaveSceneries(app);
  if (app.stopRequested) return false;
  const ui::Answer answer = app.windows.messageBox(
      {"FS Skyvault is still at work. Stop it?\r\n\r\nYes stops it after the file that it is at, "
       "and then closes the program. No waits for it to end.",
       ui::BoxIcon::question, ui::BoxButtons::yesNo, ui::programTitle, ui::DefaultButton::no});
  if (answer != ui::Answer::yes) return false;
  // It may have ended meanwhile.
  if (!operationRuns(app)) return mayLeaveInfo(app) && mayLeaveSceneries(app);
  app.stopRequested = true;
  return false;
}

void Form_Unload(App& app) {
  auto& form = app.frmMain;
  app.ending = true;
  // The simulator's own: its view is the one that a start shows.
  rememberAircraft(app);
  if (form.lstAircraft.count() > 1 || app.listedView == View::hangar) {
    writeSetting(app, setting::LastACSelected, std::to_string(app.FSSelIndex)).skipped();
    writeSetting(app, setting::LastACFolder, app.FSSelFolder).skipped();
  }
  storeLists(app);
  writeSetting(app, setting::MainState, std::to_string(static_cast<int>(form.windowState.get())))
      .skipped();
  if (form.windowState != ui::Form::State::normal) form.windowState = ui::Form::State::normal;
  writeSetting(app, setting::MainTop, std::to_string(form.top)).skipped();
  writeSetting(app, setting::MainLeft, std::to_string(form.left)).skipped();
  writeSetting(app, setting::MainWidth, std::to_string(form.width)).skipped();
  form.visible = false;
  app.windows.unload(app.frmSplash);
  cancelFolderChoice(app);
  for (ui::Form* other :
       std::initializer_list<ui::Form*>{&app.frmIdentity, &app.frmMailPack, &app.frmSettings})
    app.windows.unload(*other);
  app.windows.yieldTimes(yieldsAtEnd);
}

}  // namespace skv
