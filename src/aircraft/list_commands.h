// The commands that change what lstAircraft holds, and the scans that fill the three library lists
// from the aircraft root of the view.
#pragma once

#include <string>

#include "core/app.h"

namespace skv {

// Takes one folder into the list by hand.
void btnAddAC_Click(App& app);

// Takes the selected row out of the list and, on the user's wish, the aircraft off the disk: its
// folder in the simulator's view, in the Hangar's its folder, its main folder and its Package.
void btnDelAC_Click(App& app);

// Add what a scan of the aircraft root finds and the list does not have yet.
void mnuFileImportAC_Click(App& app);
void mnuFileImportPN_Click(App& app);
void mnuFileImportSN_Click(App& app);

// Asks for the name of a new row, "" when the user gives none. What cannot be stored is asked for
// again.
std::string askRowName(App& app, const std::string& prompt, const std::string& title,
                       const std::string& proposed);

}  // namespace skv
