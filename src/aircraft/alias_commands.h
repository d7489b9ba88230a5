// What a user does with panels and sounds of the library: add one by hand, take one out of the
// list, give one to the selected variation by an alias, and go back to the variation's own.
#pragma once

#include "core/app.h"

namespace skv {

void btnAddPN_Click(App& app);
void btnAddSN_Click(App& app);

// Takes the selected row out of the list. Its folder and the aliases that lead there stay.
void btnDelPN_Click(App& app);
void btnDelSN_Click(App& app);

// Writes an alias to the selected row's folder into the folder of the variation, whose real
// configuration stays beside it.
void btnAssignPN_Click(App& app);
void btnAssignSN_Click(App& app);

void btnPNRestoreOriginal_Click(App& app);
void btnSNRestoreOriginal_Click(App& app);

// Brings the shared panels folder and its mirror in the Hangar into line: both hold all files of
// both then. Directly in them the newer file of a name wins, in the folders below the mirror's.
void mnuFileSynchPN_Click(App& app);

}  // namespace skv
