// The secondary windows, as data.
#pragma once

#include <optional>

#include "ui/model/controls.h"

namespace skv::ui {

// For the controls by which "Outlook" is chosen.
inline constexpr const char* outlookMeans =
    "\"Outlook\" stands for the mail program of this computer, such as Thunderbird.";

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
  // What is asked for, in words; on a first start only.
  Label lblIntro{"lblIntro"};
  ComboBox cmbFound{"cmbFound"};  // the simulators found, when there are several
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
  TextBox txtPOPPort{"txtPOPPort", "POP Port:"};
  TextBox txtSMTPHost{"txtSMTPHost", "SMTP Mailhost:"};
  TextBox txtSMTPUserName{"txtSMTPUserName", "SMTP Username:"};
  TextBox txtSMTPPassword{"txtSMTPPassword", "SMTP Password:"};
  TextBox txtOutlookFolder{"txtOutlookFolder", "Outlook Inbox Folder:"};
  ComboBox cmbOutlookFolders{"cmbOutlookFolders"};  // a heading, then the folders found
  Button btnOutlookFile{"btnOutlookFile", "Mail File..."};
  Button btnOutlookDir{"btnOutlookDir", "Mail Folder..."};
  Button btnIdentity{"btnIdentity", "&Sender..."};
  // Beside each folder: whether it is right.
  Label lblFSRootState{"lblFSRootState"};
  Label lblHangarState{"lblHangarState"};
  Label lblPacksState{"lblPacksState"};
  Label lblPanelState{"lblPanelState"};
  Label lblSceneryState{"lblSceneryState"};
  Button btnQuit{"btnQuit", "&Quit"};  // on a first start only
  Button btnOK{"btnOK", "OK"};

  std::string OldPacksDir;  // txtPacksDir as it stood when the dialog was loaded
  // What the program has put into empty fields. While a field still holds it, it follows the
  // simulator's folder.
  std::string proposedHangar, proposedPacks;
  // The passwords as the dialog has found them; none: one is kept and could not be read.
  std::optional<std::string> foundPOPPassword, foundSMTPPassword;
};

// Who sends Packages.
struct FrmIdentity : Form {
  FrmIdentity();
  TextBox txtFirstName{"txtFirstName", "First Name:"};
  TextBox txtLastName{"txtLastName", "Last Name:"};
  TextBox txtEMail{"txtEMail", "EMail Address:"};
  Button btnOK{"btnOK", "OK"};
  Button btnCancel{"btnCancel", "Cancel"};
};

struct FrmMailPack : Form {
  FrmMailPack();
  Image imgAC{"imgAC"};
  Label lblAddon{"lblAddon"};  // what is sent
  TextBox txtEMail{"txtEMail", "EMail Address:"};
  TextBox txtMsg{"txtMsg", "Message:"};
  ComboBox cmbMailType{"cmbMailType"};
  Label lblMailType{"lblMailType"};  // what the way chosen there does
  StatusLine lblStatus{"lblStatus"};
  Button btnSend{"btnSend", "&Send"};
  Button btnCancel{"btnCancel", "&Cancel"};

  // The add-on that the dialog was opened for: its row in lstInactScenery or lstAircraft, and its
  // folder's name. The row may be gone.
  bool scenery = false;
  ListView::RowId row = 0;
  std::string Name;
  bool sending = false;
  bool closing = false;  // goes when the mail that is being sent has come to its end
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

struct FrmSCOptions : Form {
  FrmSCOptions();
  Label lblFlatten{"lblFlatten", "Flatten:"};
  ListView lstFlatten{"lstFlatten", {{"Item", 3000}}};
  Label lblExclude{"lblExclude", "Exclude:"};
  ListView lstExclude{"lstExclude", {{"Item", 3000}}};
  Button btnOK{"btnOK", "OK"};
  Button btnCancel{"btnCancel", "Cancel"};

  bool Cancelled = false;
};

// A picture at its full size.
struct FrmShowPic : Form {
  FrmShowPic();
  Image imgShowPic{"imgShowPic"};  // shows pixels; the window takes their size
};

}  // namespace skv::ui
