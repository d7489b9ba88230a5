// The tab "EMail" of frmSettings.
#pragma once

#include "core/app.h"

namespace skv {

// Fills the fields from the store. A password that cannot be read is told of.
void loadMailSettings(App& app);
// Stores them; a password only when it was changed. False when something could not be stored, which
// the user has been told.
bool storeMailSettings(App& app);

// The fields of a dialog that nobody sees hold no passwords.
void forgetPasswords(App& app);

// Fills cmbOutlookFolders with the mail folders of this computer, once for each showing of the
// dialog.
void listOutlookFolders(App& app);
void cmbOutlookFolders_Click(App& app);
void btnOutlookFile_Click(App& app);  // picks an mbox file
void btnOutlookDir_Click(App& app);   // picks a Maildir

}  // namespace skv
