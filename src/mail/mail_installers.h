// "Install SKV Addon from Email": walks the mails of a mailbox or of a mail folder of this machine,
// shows the sender's note of each that carries a Package of the view's kind, and hands the Package
// to the installer.
//
// Of what a mail says nothing is believed: its attachment must be named as an add-on's archive can
// be, or it is passed over, and one mail that is no good does not keep the others from their turn.
// A saved Package lies in InstallTempDir until the installer is done with it, and no longer.
#pragma once

#include "core/app.h"

namespace skv {

// Of the POP3 mailbox. A mail goes from the server when its add-on is installed, or was already, or
// at the user's word.
void mnuFileInstallFromEmailPOP_Click(App& app);
// Of the folder OutlookFolder, where every mail stays.
void mnuFileInstallFromEmailOLK_Click(App& app);

}  // namespace skv
