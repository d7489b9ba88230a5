// frmSettings: the folders and the mail accounts.
#pragma once

#include "core/app.h"

namespace skv {

void mnuFileSettings_Click(App& app);
// Shows the dialog, waits until it is gone and unloads it. What is on screen besides is the
// caller's matter.
void runSettings(App& app);

void frmSettings_Form_Load(App& app);
void frmSettings_Form_Unload(App& app);
void tabSettings_Click(App& app, int index);
void txtFSRoot_LostFocus(App& app);
void txtHangarDir_GotFocus(App& app);
void btnBrowse_Click(App& app);
void btnBrowseHangar_Click(App& app);
void btnBrowsePacks_Click(App& app);
void btnBrowsePanel_Click(App& app);
void Command1_Click(App& app);
void frmSettings_btnOK_Click(App& app);

}  // namespace skv
