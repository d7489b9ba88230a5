#include "ui/model/dialogs.h"

namespace skv::ui {

FrmSplash::FrmSplash() : Form("frmSplash") { btnClose.visible = false; }

FrmSettings::FrmSettings() : Form("frmSettings", "FS Skyvault Settings") {
  txtPOPPassword.password = true;
  frameEmail.visible = false;
  lblIntro.visible = false;
  cmbFound.visible = false;
  btnQuit.visible = false;
}

FrmDirSelect::FrmDirSelect() : Form("frmDirSelect", "Select Folder") {}

FrmSCOptions::FrmSCOptions() : Form("frmSCOptions", "FS Skyvault - Scenery Options") {
  for (ListView* list : {&lstFlatten, &lstExclude}) list->labelEdit = list->editByTyping = true;
}

FrmShowPic::FrmShowPic() : Form("frmShowPic", "FS Skyvault - Show Picture") {}

}  // namespace skv::ui
