#include "ui/model/frm_main.h"

#include "ui/model/dialogs.h"

namespace skv::ui {

std::vector<ListView::Column> libraryColumns() { return {{"Name:", 6350}, {"Folder:", 2117}}; }

std::vector<ListView::Column> sceneryColumns() {
  return {{"Name:", 7056}, {"Folder:", 2540}, {"Area:", 0},   {"Layer:", 0}, {"SortLayer", 0},
          {"RemPath", 0},  {"Texture_ID", 0}, {"Flatten", 0}, {"Exclude", 0}};
}

FrmMain::FrmMain() : Form("frmMain", "FS Skyvault") {
  // Designed size; start-up replaces it by the stored one.
  left = 1500;
  top = 1200;
  width = 15000;
  height = 10800;

  mnuFile.entries = {&mnuFileImport,           &mnuFileInstall, &mnuFilePackage,
                     &mnuFileUnpackage,        &mnuDummy1,      &mnuFileMailPack,
                     &mnuFileInstallFromEmail, &mnuDummy5,      &mnuFileSynchPN,
                     &mnuFileSettings,         &mnuDummy7,      &mnuFileQuit};
  mnuFileImport.entries = {&mnuFileImportAC, &mnuFileImportPN, &mnuFileImportSN,
                           &mnuFileImportSceneries};
  mnuFileInstall.entries = {&mnuFileInstallAC, &mnuFileInstallSC};
  mnuFileInstallFromEmail.entries = {&mnuFileInstallFromEmailOLK, &mnuFileInstallFromEmailPOP};
  mnuView.entries = {&mnuViewFSAircraft, &mnuViewHangar,         &mnuViewPackages, &mnuDummy2,
                     &mnuViewFSScenery,  &mnuViewInactSceneries, &mnuDummy4,       &mnuViewCfg,
                     &mnuDummy6,         &mnuViewRefresh};
  mnuViewCfg.entries = {&mnuViewACCfgAC, &mnuViewACCfgPN, &mnuViewACCfgSN, &mnuViewACCfgMD};
  mnuHelp.entries = {&mnuHelpManual, &mnuHelpDownload, &mnuDummy3, &mnuHelpAbout};
  mnuPic.entries = {&mnuPicSnap, &mnuPicClip, &mnuPicFile, &mnuPicDel};
  mnuList.entries = {&mnuListOpen, &mnuListCfg, &mnuListHangar, &mnuListCopy, &mnuListRename};
  lstAircraft.contextMenu = &mnuList;
  mnuSC.entries = {&mnuSCOpen, &mnuSCCopy};
  lstScenery.contextMenu = &mnuSC;
  mnuSL.entries = {&mnuSLOptions, &mnuSLOpen, &mnuSLCopy};
  lstInactScenery.contextMenu = &mnuSL;
  for (MenuItem* line :
       {&mnuDummy1, &mnuDummy2, &mnuDummy3, &mnuDummy4, &mnuDummy5, &mnuDummy6, &mnuDummy7})
    line->separator = true;
  for (MenuItem* hidden : {&mnuViewPackages, &mnuDummy2, &mnuViewInactSceneries})
    hidden->visible = false;

  for (ListView* list : {&lstAircraft, &lstPanel, &lstSound}) list->labelEdit = true;
  lstScenery.checkBoxes = true;
  txtACDescription.multiLine = true;
  for (TextBox* box : {&txtACTitle, &txtSim, &txtModel, &txtPanel, &txtSound, &txtTexture,
                       &txtATCID, &txtATCAirline, &txtATCFlight, &txtUIManufacturer, &txtUIType,
                       &txtUIVariation, &txtACDescription})
    box->save = &btnSaveACInfo;
  mnuFileInstallFromEmailOLK.hint = outlookMeans;

  lblACSpecimen.visible = false;
  lblListLoading.visible = false;
  lblSceneryChanged.visible = false;
  lblSceneryUnreached.visible = false;
  lblSceneryChanged.colour = lblSceneryUnreached.colour = 33023;  // orange
  frameScenery.visible = false;
  for (Frame* later :
       {&framePanel, &frameSound, &frameACInfoATC, &frameACinfoUI, &frameACDescription})
    later->visible = false;
}

}  // namespace skv::ui
