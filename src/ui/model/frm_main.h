// The main window: its control tree and its menu, as data.
#pragma once

#include <array>

#include "ui/model/controls.h"

namespace skv::ui {

// Columns of a library list: aircraft, panels, sounds.
std::vector<ListView::Column> libraryColumns();
// Columns of the two scenery lists; the last seven hold data only.
std::vector<ListView::Column> sceneryColumns();

struct FrmMain : Form {
  FrmMain();

  // Menu bar.
  MenuItem mnuFile{"mnuFile", "&File"};
  MenuItem mnuFileImport{"mnuFileImport", "Import"};
  MenuItem mnuFileImportAC{"mnuFileImportAC", "Aircrafts", "Ctrl+A"};
  MenuItem mnuFileImportPN{"mnuFileImportPN", "Panels", "Ctrl+N"};
  MenuItem mnuFileImportSN{"mnuFileImportSN", "Sounds", "Ctrl+S"};
  MenuItem mnuFileImportSceneries{"mnuFileImportSceneries", "Sceneries"};
  MenuItem mnuFileInstall{"mnuFileInstall", "Install Package/ZIP"};
  MenuItem mnuFileInstallAC{"mnuFileInstallAC", "Aircraft"};
  MenuItem mnuFileInstallSC{"mnuFileInstallSC", "Scenery"};
  MenuItem mnuFilePackage{"mnuFilePackage", "Package SKV Addon"};
  MenuItem mnuFileUnpackage{"mnuFileUnpackage", "UnPackage SKV Addon"};
  MenuItem mnuDummy1{"mnuDummy1", "-"};
  MenuItem mnuFileMailPack{"mnuFileMailPack", "Email Package to a Friend..."};
  MenuItem mnuFileInstallFromEmail{"mnuFileInstallFromEmail", "Install SKV Addon from Email"};
  MenuItem mnuFileInstallFromEmailOLK{"mnuFileInstallFromEmailOLK", "Outlook"};
  MenuItem mnuFileInstallFromEmailPOP{"mnuFileInstallFromEmailPOP", "POP3"};
  MenuItem mnuDummy5{"mnuDummy5", "-"};
  MenuItem mnuFileSynchPN{"mnuFileSynchPN", "Synchronize Panels Folder"};
  MenuItem mnuFileSettings{"mnuFileSettings", "&Settings", "F2"};
  MenuItem mnuDummy7{"mnuDummy7", "-"};
  MenuItem mnuFileQuit{"mnuFileQuit", "&Quit", "Ctrl+Q"};
  MenuItem mnuEdit{"mnuEdit", "&Edit"};
  MenuItem mnuView{"mnuView", "&View"};
  MenuItem mnuViewFSAircraft{"mnuViewFSAircraft", "FS 2002 Aircraft", "Ctrl+F"};
  MenuItem mnuViewHangar{"mnuViewHangar", "Hangar", "Ctrl+H"};
  MenuItem mnuViewPackages{"mnuViewPackages", "Packages", "Ctrl+P"};
  MenuItem mnuDummy2{"mnuDummy2", "-"};
  MenuItem mnuViewFSScenery{"mnuViewFSScenery", "Scenery Manager"};
  MenuItem mnuViewInactSceneries{"mnuViewInactSceneries", "Inactive Sceneries"};
  MenuItem mnuDummy4{"mnuDummy4", "-"};
  MenuItem mnuViewCfg{"mnuViewCfg", "View Config File"};
  MenuItem mnuViewACCfgAC{"mnuViewACCfgAC", "Aircraft.cfg"};
  MenuItem mnuViewACCfgPN{"mnuViewACCfgPN", "Panel.cfg"};
  MenuItem mnuViewACCfgSN{"mnuViewACCfgSN", "Sound.cfg"};
  MenuItem mnuViewACCfgMD{"mnuViewACCfgMD", "Model.cfg"};
  MenuItem mnuDummy6{"mnuDummy6", "-"};
  MenuItem mnuViewRefresh{"mnuViewRefresh", "Refresh", "F5"};
  MenuItem mnuHelp{"mnuHelp", "&Help"};
  MenuItem mnuHelpManual{"mnuHelpManual", "Users Manual"};
  MenuItem mnuHelpDownload{"mnuHelpDownload", "Dowmload latest version..."};
  MenuItem mnuDummy3{"mnuDummy3", "-"};
  MenuItem mnuHelpAbout{"mnuHelpAbout", "About"};
  // The bar's menus, in order.
  const std::array<MenuItem*, 4> menuBar{&mnuFile, &mnuEdit, &mnuView, &mnuHelp};

  // The pop-up menu of the pictures; not on the bar.
  MenuItem mnuPic{"mnuPic", "Picture"};
  MenuItem mnuPicSnap{"mnuPicSnap", "Make Snapshot of FS2002"};
  MenuItem mnuPicClip{"mnuPicClip", "Picture from Clipboard", "Ctrl+V"};
  MenuItem mnuPicFile{"mnuPicFile", "Picture from File..."};
  MenuItem mnuPicDel{"mnuPicDel", "Remove this picture"};

  // The context menu of a row of lstAircraft; not on the bar.
  MenuItem mnuList{"mnuList", "Aircraft"};
  MenuItem mnuListOpen{"mnuListOpen", "&Open Folder"};
  MenuItem mnuListCfg{"mnuListCfg", "&View Aircraft.cfg"};
  MenuItem mnuListHangar{"mnuListHangar", ""};  // named as btnHangar is
  MenuItem mnuListCopy{"mnuListCopy", "&Copy Path"};
  MenuItem mnuListRename{"mnuListRename", "&Rename"};

  // The context menus of rows of lstScenery and lstInactScenery; not on the bar.
  MenuItem mnuSC{"mnuSC", "Scenery"};
  MenuItem mnuSCOpen{"mnuSCOpen", "&Open Folder"};
  MenuItem mnuSCCopy{"mnuSCCopy", "&Copy Path"};
  MenuItem mnuSL{"mnuSL", "Scenery"};
  MenuItem mnuSLOptions{"mnuSLOptions", "&Edit Flatten and Exclude..."};
  MenuItem mnuSLOpen{"mnuSLOpen", "&Open Folder"};
  MenuItem mnuSLCopy{"mnuSLCopy", "&Copy Path"};

  // Aircraft, the upper band.
  Frame frameAircraft{"frameAircraft"};
  Button btnAddAC{"btnAddAC", "Add New..."};
  Button btnDelAC{"btnDelAC", "Delete"};
  Button btnACRestoreOriginal{"btnACRestoreOriginal", "Restore original"};
  Button btnHangar{"btnHangar"};
  ListView lstAircraft{"lstAircraft", libraryColumns()};
  Divider divAircraft{"divAircraft"};
  Image imgAircraft{"imgAircraft"};
  Label lblACSpecimen{"lblACSpecimen", "<SPECIMEN>"};

  // Details, the lower band.
  Frame frameAddon{"frameAddon"};
  TabStrip tabAddon{"tabAddon"};

  Frame frameInfo{"frameInfo"};
  ListView lstACVersions{"lstACVersions", {{"#", 706}, {"Title", 6174}}};
  Divider divInfo{"divInfo"};
  Button btnSaveACInfo{"btnSaveACInfo", "Save A/C Info"};
  TabStrip tabACInfo{"tabACInfo"};
  Frame frameACInfoGeneral{"frameACInfoGeneral"};
  TextBox txtACTitle{"txtACTitle", "Title:"};
  TextBox txtSim{"txtSim", "Air Dynamics:"};
  TextBox txtModel{"txtModel", "Model:"};
  TextBox txtPanel{"txtPanel", "Panel:"};
  TextBox txtSound{"txtSound", "Sound:"};
  TextBox txtTexture{"txtTexture", "Texture:"};
  Frame frameACInfoATC{"frameACInfoATC"};
  TextBox txtATCID{"txtATCID", "ATC ID:"};
  TextBox txtATCAirline{"txtATCAirline", "Airline:"};
  TextBox txtATCFlight{"txtATCFlight", "Flight Number:"};
  Frame frameACinfoUI{"frameACinfoUI"};
  TextBox txtUIManufacturer{"txtUIManufacturer", "Manufacturer:"};
  TextBox txtUIType{"txtUIType", "Type:"};
  TextBox txtUIVariation{"txtUIVariation", "Variation:"};
  Frame frameACDescription{"frameACDescription"};
  TextBox txtACDescription{"txtACDescription", "Description:"};

  Frame framePanel{"framePanel"};
  Button btnAddPN{"btnAddPN", "Add New..."};
  Button btnDelPN{"btnDelPN", "Delete"};
  Button btnPNRestoreOriginal{"btnPNRestoreOriginal", "Restore original"};
  Button btnAssignPN{"btnAssignPN", "Assign to A/C"};
  ListView lstPanel{"lstPanel", libraryColumns()};
  Divider divPanel{"divPanel"};
  Image imgPanel{"imgPanel"};
  Label lblPNStatus{"lblPNStatus"};

  Frame frameSound{"frameSound"};
  Button btnAddSN{"btnAddSN", "Add New..."};
  Button btnDelSN{"btnDelSN", "Delete"};
  Button btnSNRestoreOriginal{"btnSNRestoreOriginal", "Restore original"};
  Button btnAssignSN{"btnAssignSN", "Assign to A/C"};
  ListView lstSound{"lstSound", libraryColumns()};
  Divider divSound{"divSound"};
  Label lblSNStatus{"lblSNStatus"};

  // Scenery Manager.
  Frame frameScenery{"frameScenery", "Scenery Manager"};
  Label lblSceneryInstalled{"lblSceneryInstalled", "Installed in FS2002:"};
  // Shown while the rows differ from the file.
  Label lblSceneryChanged{"lblSceneryChanged", "Not saved yet"};
  // Shown while the file has areas that are not among the rows.
  Label lblSceneryUnreached{"lblSceneryUnreached"};
  ListView lstScenery{"lstScenery", sceneryColumns()};
  Button btnSCup{"btnSCup"};
  Button btnSCdn{"btnSCdn"};
  Button btnFSScenerySave{"btnFSScenerySave", "Save SceneryDB"};
  Button btnFSScenDel{"btnFSScenDel", "Delete"};
  SplitBar lblSepBar{"lblSepBar"};
  Label Label15{"Label15", "In SKV Scenery Library:"};
  ListView lstInactScenery{"lstInactScenery", sceneryColumns()};
  Button btnSLDel{"btnSLDel", "Delete"};
  Button btnAddSLtoFS{"btnAddSLtoFS", "Add to FS2002"};
  Button btnAddToSL{"btnAddToSL", "<<-- Add to Library"};
  Divider divScenery{"divScenery"};
  Frame frameFtreeScenery{"frameFtreeScenery", "Scenery Files Browser:"};
  FolderTree ftreeScenery{"ftreeScenery"};
  Frame frameSceneryCopy{"frameSceneryCopy"};
  OptionButton optMove{"optMove", "Move", false};
  OptionButton optCopy{"optCopy", "Copy", true};
  Frame frameSceneryType{"frameSceneryType"};
  OptionButton optScenery{"optScenery", "Scenery", true};
  OptionButton optTextures{"optTextures", "Textures", false};
  Image imgScenery{"imgScenery"};
  Label lblSceneryTitle{"lblSceneryTitle"};
  Label lblListLoading{"lblListLoading", "Loading List. Please wait..."};

  // Heights of the two scenery lists in twips: the split bar takes from one what it gives to the
  // other. The front-end sets them when it lays the window out and follows when they are set.
  Property<int> sceneryHeight{*this, 0};
  Property<int> libraryHeight{*this, 0};

  StatusLine lblStatus{"lblStatus"};
};

}  // namespace skv::ui
