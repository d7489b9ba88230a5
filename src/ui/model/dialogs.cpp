#include "ui/model/dialogs.h"

namespace skv::ui {

FrmSplash::FrmSplash() : Form("frmSplash") { btnClose.visible = false; }

FrmSettings::FrmSettings() : Form("frmSettings", "FS Skyvault Settings") {
  txtPOPPassword.password = txtSMTPPassword.password = true;
  txtOutlookFolder.hint = cmbOutlookFolders.hint = outlookMeans;
  txtPOPHost.hint = txtSMTPHost.hint = "The server's name, or name:port";
  txtSMTPUserName.hint = "Empty when the server asks for no login";
  frameEmail.visible = false;
  lblIntro.visible = false;
  cmbFound.visible = false;
  btnQuit.visible = false;
}

FrmIdentity::FrmIdentity() : Form("frmIdentity", "FS Skyvault - Sender") {}

FrmMailPack::FrmMailPack() : Form("frmMailPack", "FS Skyvault - Email Package") {
  txtMsg.multiLine = txtMsg.lineBreaks = true;
  cmbMailType.hint = outlookMeans;
}

FrmDirSelect::FrmDirSelect() : Form("frmDirSelect", "Select Folder") {}

FrmSCOptions::FrmSCOptions() : Form("frmSCOptions", "FS Skyvault - Scenery Options") {
  for (ListView* list : {&lstFlatten, &lstExclude}) list->labelEdit = list->editByTyping = true;
}

FrmShowPic::FrmShowPic() : Form("frmShowPic", "FS Skyvault - Show Picture") {}

}  // namespace skv::ui
