// The order of the simulator's sceneries, and what the window shows of the selected ones. Moves and
// check marks change the rows alone; "Save SceneryDB" writes them.
#pragma once

#include "core/app.h"

namespace skv {

// The selected row of lstScenery goes one up or down, by an exchange of "SortLayer" with its
// neighbour. Where the two have one layer, all rows first get distinct ones by their positions.
void btnSCup_Click(App& app);
void btnSCdn_Click(App& app);
// As many clicks of the one (negative) or the other (positive) in a row.
void lstScenery_Move(App& app, int steps);

void btnFSScenerySave_Click(App& app);

// Title and picture of the selected row; none without one. imgScenery.tag becomes its folder, with
// trailing backslash, which the picture commands work on.
void lstScenery_ItemClick(App& app);
void lstInactScenery_ItemClick(App& app);
// The same for the folder that is selected in the files browser; its path is the title.
void ftreeScenery_SelectionChange(App& app);
// For rows that are gone.
void showNoScenery(App& app);

}  // namespace skv
