// frmSettings: the folders and the mail accounts.
#pragma once

#include "core/app.h"

namespace skv {

void mnuFileSettings_Click(App& app);
// Shows the dialog, waits until it is gone and unloads it. What is on screen besides is the
// caller's matter.
void runSettings(App& app);

// Whether a folder that the program needs has never been stored.
bool lacksFolders(const App& app);

// SceneryPacksPath as the settings have it, or in the Packages folder; made when it is missing and
// its disk is there.
void findSceneryPacksPath(App& app);

void frmSettings_Form_Load(App& app);
void frmSettings_Form_Unload(App& app);
void tabSettings_Click(App& app, int index);
// Another text in one of the folder fields: shows beside each whether it is right.
void showFolderStates(App& app);
void cmbFound_Click(App& app);  // frmSettings: another of the simulators found
void txtFSRoot_LostFocus(App& app);
void txtHangarDir_GotFocus(App& app);
// The other folder fields: what was typed takes its final form.
void folderField_LostFocus(App& app, ui::TextBox& field);
void btnBrowse_Click(App& app);
void btnBrowseHangar_Click(App& app);
void btnBrowsePacks_Click(App& app);
void btnBrowsePanel_Click(App& app);
void Command1_Click(App& app);
void frmSettings_btnOK_Click(App& app);
// Ends the program in place of a start without its folders; nothing is stored.
void frmSettings_btnQuit_Click(App& app);

}  // namespace skv
