// The secondary windows, as data.
#pragma once

#include "ui/model/controls.h"

namespace skv::ui {

struct FrmSplash : Form {
  FrmSplash();
  Image Image1{"Image1"};
  Label lblVersion{"lblVersion"};
  Label Label2{"Label2", "Credits:"};
  Label Label3{"Label3", "ZIP Support by RichSoft"};
  Label Label4{"Label4", "CCRP Common Controls Replacement Project"};
  Label Label5{"Label5", "Chilkat Email Engine"};
  Button btnClose{"btnClose", "Close"};
};

struct FrmSettings : Form {
  FrmSettings();
  TabStrip tabSettings{"tabSettings"};
  Frame frameLocations{"frameLocations"};
  TextBox txtFSRoot{"txtFSRoot", "FS 2002 Installation Folder:"};
  Button btnBrowse{"btnBrowse", "..."};
  TextBox txtHangarDir{"txtHangarDir", "Hangar Base Folder:"};
  Button btnBrowseHangar{"btnBrowseHangar", "..."};
  TextBox txtPacksDir{"txtPacksDir", "Packages Base Folder:"};
  Button btnBrowsePacks{"btnBrowsePacks", "..."};
  TextBox txtCentralPanel{"txtCentralPanel", "Panel Container Folder:"};
  Button btnBrowsePanel{"btnBrowsePanel", "..."};
  TextBox txtSceneryLib{"txtSceneryLib", "Scenery Library Folder:"};
  Button Command1{"Command1", "..."};
  Frame frameEmail{"frameEmail"};
  TextBox txtPOPUserName{"txtPOPUserName", "POP Username:"};
  TextBox txtPOPPassword{"txtPOPPassword", "POP Password:"};
  TextBox txtPOPHost{"txtPOPHost", "POP Mailhost:"};
  TextBox txtSMTPHost{"txtSMTPHost", "SMTP Mailhost:"};
  TextBox txtOutlookFolder{"txtOutlookFolder", "Outlook Inbox Folder:"};
  Button btnOK{"btnOK", "OK"};

  std::string OldPacksDir;  // txtPacksDir as it stood when the dialog was loaded
};

struct FrmDirSelect : Form {
  FrmDirSelect();
  FolderTree Dir1{"Dir1"};
  TextBox txtDir{"txtDir"};
  Button btnMkDir{"btnMkDir", "Create folder..."};
  Button btnOK{"btnOK", "&OK"};
  Button btnCancel{"btnCancel", "&Cancel"};

  bool DirCancelled = false;
};

}  // namespace skv::ui
