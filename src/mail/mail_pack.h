// "Email Package to a Friend...": frmMailPack, which sends the Package of one add-on.
#pragma once

#include "core/app.h"

namespace skv {

// Asks for what is missing of the sender, and opens the dialog for the selected add-on: a scenery
// of the library in the Scenery Manager, else an aircraft of the Hangar.
void mnuFileMailPack_Click(App& app);

void frmMailPack_Form_Load(App& app);
void cmbMailType_Click(App& app);
// Makes the Package when there is none, and sends it. The dialog stays open for another recipient.
void btnSend_Click(App& app);
void frmMailPack_btnCancel_Click(App& app);
// The close box. While a mail is being sent it asks, and the dialog goes when that has ended.
void frmMailPack_Close(App& app);

}  // namespace skv
