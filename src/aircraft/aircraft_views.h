// The two aircraft views: the simulator's aircraft and the Hangar's.
#pragma once

#include <string>

#include "core/app.h"

namespace skv {

// Show the view and load its three lists, unless edits in the Info tab have to stay. Each view
// comes back to the aircraft that was selected in it. Also called to reload a view.
void mnuViewFSAircraft_Click(App& app);
void mnuViewHangar_Click(App& app);

// Loads the lists of the last aircraft view anew, from where the settings have them now, selects
// the same aircraft again and fills its tabs. The one way to reload them: rows and boxes belong
// together. False when edits in the Info tab have to stay.
bool reloadAircraftList(App& app);

// Selects the row of that folder, or else the one of that number (from 1, 0 for none) or the last,
// scrolls it into view and shows it.
void selectAircraft(App& app, const std::string& folder, int fallbackRow);

// Notes the selected aircraft of the view whose rows are loaded, in FSSelIndex and FSSelFolder or
// in those of the Hangar.
void rememberAircraft(App& app);

}  // namespace skv
