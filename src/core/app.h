// One run of the program: what all operations share. Nothing else is shared; two runs can live side
// by side.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/text.h"
#include "platform/platform.h"
#include "ui/model/dialogs.h"
#include "ui/model/frm_main.h"
#include "ui/model/windowing.h"

namespace skv {

enum class View { fsAircraft, hangar, scenery };

// What a library list was filled from, and so what it may be written over; see list_store.h.
struct ListSource {
  std::string file;                  // "" before the first load
  std::optional<std::string> bytes;  // as read or written last, "" for no file; none: not read
};

// What lstScenery was made of, and so what a save may replace.
struct SceneryDatabase {
  std::string file = {};              // Scenery.cfg of the simulator, "" before the first load
  bool read = false;                  // the file's rows are in the list; a missing file has none
  std::optional<FileState> was = {};  // the file when its rows were read; none: it was missing
  // Areas of that file that the rows don't know of, as the user is told of them; none: not looked
  // for.
  std::optional<std::vector<std::string>> unreached = {};
  // The rows as the file has them, from the top, with their check marks.
  std::vector<std::pair<ui::ListView::RowId, bool>> rows = {};
  unsigned loads = 0;  // by which a load that yields sees that another was faster
};

// What the boxes of the Info tab were filled from, and so where they may be saved.
struct InfoSource {
  ui::ListView::RowId row = 0;      // of lstAircraft
  std::string folder;               // of the aircraft
  int variation = 0;                // row of lstACVersions
  std::vector<std::string> values;  // of the boxes, in the order of the keys; none: not filled
  std::string refusal;              // why they were not filled
};

struct App {
  App(Platform thePlatform, ui::Windowing& theWindows);
  App(const App&) = delete;
  App& operator=(const App&) = delete;

  Platform platform;
  ui::Windowing& windows;
  CodePage codePage;  // of stored files

  // Program-wide state. Paths end in a backslash.
  std::string AppDir;          // folder of the program file
  std::string TempDir;         // the environment's TEMP
  std::string InstallTempDir;  // working folder of installers, transfers and Package jobs
  std::string AppVersionText;  // as in 0.06.0129
  std::string FSRoot;          // the simulator
  std::string HangarDir;       // side store of aircraft
  std::string PacksDir;        // Packages
  std::string PanelsDir;       // central panels folder, "" for none
  std::string SceneryLib;      // scenery library, "" for none
  std::string SceneryPacksPath;
  std::string LastZIPDir;  // folder of the last ZIP picked
  std::string LastPicDir;  // folder of the last picture picked in this run
  struct {
    std::string FirstName, LastName;
  } SenderIdentity;

  // The last aircraft view; the captions of frameAircraft and btnHangar follow it. The Scenery
  // Manager leaves it as it was.
  View aircraftView = View::fsAircraft;
  std::string ACRoot;   // aircraft root of the current view
  std::string ListDir;  // folder of the current view's list files
  int FSSelIndex = 0;   // remembered row of each aircraft view, from 1; 0 until set
  int HangarSelIndex = 0;
  std::string FSSelFolder;  // the aircraft of that row, by which it is found again
  std::string HangarSelFolder;
  View listedView = View::fsAircraft;  // whose rows the three library lists hold
  unsigned viewSwitches = 0;           // by which a switch that yields sees that another was faster
  ListSource aircraftSource, panelSource, soundSource;
  InfoSource infoSource;

  std::string CfgCacheSize, CfgCleanOnExit;  // of the Scenery.cfg read last, carried over as text
  double SceneryCfgStamp = 0;  // time of Scenery.cfg in SKV_SC.lst, in days since 30 December 1899
  SceneryDatabase sceneryDatabase;
  ListSource librarySource;  // of lstInactScenery

  // Results of WalkTree.
  std::string FoundDir;  // folder of the first match
  double SizeTotal = 0;  // bytes
  std::vector<std::string> PackFileList;

  // An archive handed over by mail, "" for none. A run that fails leaves it where it is.
  std::string PendingZIP;
  bool ZipDone = false;  // the extraction is over

  // See long_operation.h.
  int operations = 0;
  int hourglasses = 0;  // those of them that want the pointer to be one
  // The user wants the running operation to end after the file it is at.
  bool stopRequested = false;
  bool starting = false;  // start-up has not shown the main window yet
  bool ending = false;    // the main window was closed: whoever waits for a dialog gives up

  bool SepDragging = false;
  // Of the main window at the last layout, in twips; the aspect is width by height, 0 until
  // start-up.
  int LayoutWidth = 0, LayoutHeight = 0;
  double LayoutAspect = 0;

  // Where the own pictures of the variation and of the panel that shows belong, with trailing
  // backslash; "" without one. That of a scenery is the tag of imgScenery.
  std::string TexDir, PanelPicDir;
  // The image on which the user last pressed the right mouse button; null before that.
  ui::Image* PicTarget = nullptr;

  ui::FrmMain frmMain;
  ui::FrmSplash frmSplash;
  ui::FrmSettings frmSettings;
  ui::FrmDirSelect frmDirSelect;
  ui::FrmSCOptions frmSCOptions;
  ui::FrmShowPic frmShowPic;
  ui::FrmMailPack frmMailPack;
  ui::FrmIdentity frmIdentity;

  FileSystem& files() { return platform.files; }
};

}  // namespace skv
