#include "ui/events.h"

#include "aircraft/aircraft_cfg.h"
#include "aircraft/aircraft_menu.h"
#include "aircraft/aircraft_views.h"
#include "aircraft/alias_commands.h"
#include "aircraft/alias_tabs.h"
#include "aircraft/hangar_transfer.h"
#include "aircraft/list_commands.h"
#include "aircraft/list_files.h"
#include "mail/identity.h"
#include "mail/mail_installers.h"
#include "mail/mail_pack.h"
#include "packaging/aircraft_installer.h"
#include "packaging/package_commands.h"
#include "packaging/scenery_installer.h"
#include "pictures/picture_commands.h"
#include "pictures/picture_viewer.h"
#include "scenery/scenery_database.h"
#include "scenery/scenery_deletion.h"
#include "scenery/scenery_import.h"
#include "scenery/scenery_library.h"
#include "scenery/scenery_menu.h"
#include "scenery/scenery_options.h"
#include "scenery/scenery_order.h"
#include "scenery/scenery_transfer.h"
#include "scenery/scenery_view.h"
#include "ui/dialogs/dir_select.h"
#include "ui/help.h"
#include "ui/mail_settings.h"
#include "ui/settings.h"
#include "ui/views.h"

namespace skv {

namespace {

void connectMenus(App& app) {
  auto& form = app.frmMain;
  form.mnuFileInstallAC.click = [&app] { mnuFileInstallAC_Click(app); };
  form.mnuFilePackage.click = [&app] { mnuFilePackage_Click(app); };
  form.mnuFileUnpackage.click = [&app] { mnuFileUnpackage_Click(app); };
  form.mnuFileInstallSC.click = [&app] { mnuFileInstallSC_Click(app); };
  form.mnuFileMailPack.click = [&app] { mnuFileMailPack_Click(app); };
  form.mnuFileInstallFromEmailPOP.click = [&app] { mnuFileInstallFromEmailPOP_Click(app); };
  form.mnuFileInstallFromEmailOLK.click = [&app] { mnuFileInstallFromEmailOLK_Click(app); };
  form.mnuFileQuit.click = [&app] { ui::raise(app.frmMain.closed); };
  form.mnuFileSettings.click = [&app] { mnuFileSettings_Click(app); };
  form.mnuViewFSAircraft.click = [&app] { leaveForAircraft(app, mnuViewFSAircraft_Click); };
  form.mnuViewHangar.click = [&app] { leaveForAircraft(app, mnuViewHangar_Click); };
  form.mnuViewFSScenery.click = [&app] { leaveForScenery(app); };
  form.mnuViewRefresh.click = [&app] { mnuViewRefresh_Click(app); };
  form.mnuViewACCfgAC.click = [&app] { mnuViewACCfgAC_Click(app); };
  form.mnuViewACCfgPN.click = [&app] { mnuViewACCfgPN_Click(app); };
  form.mnuViewACCfgSN.click = [&app] { mnuViewACCfgSN_Click(app); };
  form.mnuViewACCfgMD.click = [&app] { mnuViewACCfgMD_Click(app); };
  form.mnuFileImportAC.click = [&app] { mnuFileImportAC_Click(app); };
  form.mnuFileImportPN.click = [&app] { mnuFileImportPN_Click(app); };
  form.mnuFileImportSN.click = [&app] { mnuFileImportSN_Click(app); };
  form.mnuFileSynchPN.click = [&app] { mnuFileSynchPN_Click(app); };
  form.mnuListOpen.click = [&app] { mnuListOpen_Click(app); };
  form.mnuListCfg.click = [&app] { mnuViewACCfgAC_Click(app); };
  form.mnuListHangar.click = [&app] { btnHangar_Click(app); };
  form.mnuListCopy.click = [&app] { mnuListCopy_Click(app); };
  form.mnuListRename.click = [&app] { mnuListRename_Click(app); };
  form.mnuHelpDownload.click = [&app] { mnuHelpDownload_Click(app); };
  form.mnuHelpManual.click = [&app] { mnuHelpManual_Click(app); };
  form.mnuHelpAbout.click = [&app] { mnuHelpAbout_Click(app); };
}

void connectAircraftViews(App& app) {
  auto& form = app.frmMain;
  form.frameAircraft.dblClick = [&app] { frameAircraft_DblClick(app); };
  form.lstAircraft.click = [&app] { lstAircraft_Click(app); };
  form.lstAircraft.itemClick = [&app] { lstAircraft_ItemClick(app); };
  form.lstAircraft.columnClick = [&app](int column) { lstAircraft_ColumnClick(app, column); };
  form.lstAircraft.afterLabelEdit = [&app](bool& cancel, const std::string& name) {
    lstAircraft_AfterLabelEdit(app, cancel, name);
  };
  form.btnAddAC.click = [&app] { btnAddAC_Click(app); };
  form.btnDelAC.click = [&app] { btnDelAC_Click(app); };
  form.btnHangar.click = [&app] { btnHangar_Click(app); };
  form.btnACRestoreOriginal.click = [&app] { btnACRestoreOriginal_Click(app); };

  form.tabAddon.click = [&app](int index) { tabAddon_Click(app, index); };
  form.tabACInfo.click = [&app](int index) { tabACInfo_Click(app, index); };
  form.lstACVersions.click = [&app] { lstACVersions_Click(app); };
  form.btnSaveACInfo.click = [&app] { btnSaveACInfo_Click(app); };
  form.txtACDescription.keyPress = txtACDescription_KeyPress;

  form.btnAddPN.click = [&app] { btnAddPN_Click(app); };
  form.btnDelPN.click = [&app] { btnDelPN_Click(app); };
  form.btnAssignPN.click = [&app] { btnAssignPN_Click(app); };
  form.btnPNRestoreOriginal.click = [&app] { btnPNRestoreOriginal_Click(app); };
  form.btnAddSN.click = [&app] { btnAddSN_Click(app); };
  form.btnDelSN.click = [&app] { btnDelSN_Click(app); };
  form.btnAssignSN.click = [&app] { btnAssignSN_Click(app); };
  form.btnSNRestoreOriginal.click = [&app] { btnSNRestoreOriginal_Click(app); };

  form.lstPanel.click = [&app] { lstPanel_Click(app); };
  form.lstPanel.afterLabelEdit = [&app](bool& cancel, const std::string& name) {
    lstPanel_AfterLabelEdit(app, cancel, name);
  };
  form.lstSound.click = [&app] { lstSound_Click(app); };
  form.lstSound.afterLabelEdit = [&app](bool& cancel, const std::string& name) {
    lstSound_AfterLabelEdit(app, cancel, name);
  };
}

void connectSceneryView(App& app) {
  auto& form = app.frmMain;
  // What each command leaves behind decides what the others can do.
  const auto handler = [&app](void (*operation)(App&)) {
    return [&app, operation] {
      operation(app);
      showSceneryCommands(app);
    };
  };
  form.lstScenery.itemClick = handler(lstScenery_ItemClick);
  form.lstScenery.click = handler(lstScenery_ItemClick);
  form.lstScenery.itemCheck = [&app](int) { showSceneryCommands(app); };
  form.lstScenery.moveSelected = [&app](int steps) {
    lstScenery_Move(app, steps);
    showSceneryCommands(app);
  };
  form.lblSceneryUnreached.click = [&app] { lblSceneryUnreached_Click(app); };
  form.btnSCup.click = handler(btnSCup_Click);
  form.btnSCdn.click = handler(btnSCdn_Click);
  form.btnFSScenerySave.click = handler(btnFSScenerySave_Click);
  form.btnFSScenDel.click = handler(btnFSScenDel_Click);
  form.lstInactScenery.itemClick = handler(lstInactScenery_ItemClick);
  form.lstInactScenery.click = handler(lstInactScenery_ItemClick);
  form.lstInactScenery.dblClick = handler(lstInactScenery_DblClick);
  form.mnuSCOpen.click = [&app] { mnuSCOpen_Click(app); };
  form.mnuSCCopy.click = [&app] { mnuSCCopy_Click(app); };
  form.mnuSLOptions.click = handler(lstInactScenery_DblClick);
  form.mnuSLOpen.click = [&app] { mnuSLOpen_Click(app); };
  form.mnuSLCopy.click = [&app] { mnuSLCopy_Click(app); };
  form.btnSLDel.click = handler(btnSLDel_Click);
  form.btnAddSLtoFS.click = handler(btnAddSLtoFS_Click);
  form.btnAddToSL.click = handler(btnAddToSL_Click);
  form.ftreeScenery.change = handler(ftreeScenery_SelectionChange);
  form.optCopy.click = handler(optCopy_Click);
  form.optMove.click = handler(optMove_Click);
  form.optScenery.click = handler(optScenery_Click);
  form.optTextures.click = handler(optTextures_Click);
  form.mnuFileImportSceneries.click = handler(mnuFileImportSceneries_Click);
  form.frameScenery.dblClick = [&app] { frameScenery_DblClick(app); };
  form.lblSepBar.mouseDown = [&app](ui::MouseButton button, int) {
    lblSepBar_MouseDown(app, button);
  };
  form.lblSepBar.mouseMove = [&app](ui::MouseButton, int y) { lblSepBar_MouseMove(app, y); };
  form.lblSepBar.mouseUp = [&app](ui::MouseButton button, int) { lblSepBar_MouseUp(app, button); };
}

void connectPictures(App& app) {
  auto& form = app.frmMain;
  form.imgAircraft.click = [&app] { imgAircraft_Click(app); };
  form.imgPanel.click = [&app] { imgPanel_Click(app); };
  form.imgScenery.click = [&app] { imgScenery_Click(app); };
  form.imgAircraft.mouseDown = [&app](ui::MouseButton button) {
    imgAircraft_MouseDown(app, button);
  };
  form.imgPanel.mouseDown = [&app](ui::MouseButton button) { imgPanel_MouseDown(app, button); };
  form.imgScenery.mouseDown = [&app](ui::MouseButton button) { imgScenery_MouseDown(app, button); };
  form.lstACVersions.mouseDown = [&app](ui::MouseButton button) {
    lstACVersions_MouseDown(app, button);
  };
  for (ui::Image* image : {&form.imgAircraft, &form.imgPanel, &form.imgScenery})
    image->fileDropped = [&app, image](const std::string& path) {
      takePictureFile(app, *image, path);
    };
  form.mnuPic.closed = [&app] { mnuPic_Closed(app); };
  form.mnuPicSnap.click = [&app] { mnuPicSnap_Click(app); };
  form.mnuPicClip.click = [&app] { mnuPicClip_Click(app); };
  form.mnuPicFile.click = [&app] { mnuPicFile_Click(app); };
  form.mnuPicDel.click = [&app] { mnuPicDel_Click(app); };
  app.frmShowPic.imgShowPic.click = [&app] { imgShowPic_Click(app); };
}

void connectDialogs(App& app) {
  app.frmSplash.btnClose.click = [&app] { frmSplash_btnClose_Click(app); };
  app.frmSplash.Label5.click = [&app] { Label5_Click(app); };

  auto& settings = app.frmSettings;
  settings.closed = [&app] { frmSettings_Form_Unload(app); };
  settings.tabSettings.click = [&app](int index) { tabSettings_Click(app, index); };
  for (ui::TextBox* field : {&settings.txtFSRoot, &settings.txtHangarDir, &settings.txtPacksDir,
                             &settings.txtCentralPanel, &settings.txtSceneryLib}) {
    field->change = [&app] { showFolderStates(app); };
    field->lostFocus = [&app, field] { folderField_LostFocus(app, *field); };
  }
  settings.txtFSRoot.lostFocus = [&app] { txtFSRoot_LostFocus(app); };
  settings.txtHangarDir.gotFocus = [&app] { txtHangarDir_GotFocus(app); };
  settings.btnBrowse.click = [&app] { btnBrowse_Click(app); };
  settings.btnBrowseHangar.click = [&app] { btnBrowseHangar_Click(app); };
  settings.btnBrowsePacks.click = [&app] { btnBrowsePacks_Click(app); };
  settings.btnBrowsePanel.click = [&app] { btnBrowsePanel_Click(app); };
  settings.Command1.click = [&app] { Command1_Click(app); };
  settings.btnQuit.click = [&app] { frmSettings_btnQuit_Click(app); };
  settings.btnOK.click = [&app] { frmSettings_btnOK_Click(app); };
  settings.cmbFound.click = [&app] { cmbFound_Click(app); };

  settings.cmbOutlookFolders.click = [&app] { cmbOutlookFolders_Click(app); };
  settings.btnOutlookFile.click = [&app] { btnOutlookFile_Click(app); };
  settings.btnOutlookDir.click = [&app] { btnOutlookDir_Click(app); };
  settings.btnIdentity.click = [&app] {
    askIdentity(app, app.frmSettings, app.frmIdentity.txtFirstName);
  };

  auto& options = app.frmSCOptions;
  options.closed = [&app] { frmSCOptions_btnCancel_Click(app); };
  options.btnOK.click = [&app] { frmSCOptions_btnOK_Click(app); };
  options.btnCancel.click = [&app] { frmSCOptions_btnCancel_Click(app); };
  options.lstFlatten.afterLabelEdit = [&app](bool& cancel, const std::string& text) {
    lstFlatten_AfterLabelEdit(app, cancel, text);
  };
  options.lstExclude.afterLabelEdit = [&app](bool& cancel, const std::string& text) {
    lstExclude_AfterLabelEdit(app, cancel, text);
  };

  auto& picker = app.frmDirSelect;
  picker.closed = [&app] { frmDirSelect_btnCancel_Click(app); };
  picker.Dir1.change = [&app] { frmDirSelect_Dir1_Change(app); };
  picker.btnOK.click = [&app] { frmDirSelect_btnOK_Click(app); };
  picker.btnCancel.click = [&app] { frmDirSelect_btnCancel_Click(app); };
  picker.btnMkDir.click = [&app] { frmDirSelect_btnMkDir_Click(app); };
}

void connectMailDialogs(App& app) {
  auto& pack = app.frmMailPack;
  pack.userActed = [&pack] { pack.lblStatus.notice = ""; };
  pack.closed = [&app] { frmMailPack_Close(app); };
  pack.cmbMailType.click = [&app] { cmbMailType_Click(app); };
  pack.btnSend.click = [&app] { btnSend_Click(app); };
  pack.btnCancel.click = [&app] { frmMailPack_btnCancel_Click(app); };

  auto& identity = app.frmIdentity;
  identity.closed = [&app] { frmIdentity_btnCancel_Click(app); };
  identity.btnOK.click = [&app] { frmIdentity_btnOK_Click(app); };
  identity.btnCancel.click = [&app] { frmIdentity_btnCancel_Click(app); };
}

}  // namespace

void connectEvents(App& app) {
  app.frmMain.resized = [&app] { Form_Resize(app); };
  app.frmMain.userActed = [&app] { app.frmMain.lblStatus.notice = ""; };
  connectMenus(app);
  connectAircraftViews(app);
  connectSceneryView(app);
  connectPictures(app);
  connectDialogs(app);
  connectMailDialogs(app);
}

}  // namespace skv
