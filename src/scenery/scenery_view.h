// The Scenery Manager's view.
#pragma once

#include "core/app.h"

namespace skv {

// Shows it and loads both lists anew: what was not saved of them is lost.
void mnuViewFSScenery_Click(App& app);

// Before the rows of lstScenery go: asks whether changes are to be saved. False when they are to
// stay on screen, also since they could not be saved.
bool mayLeaveSceneries(App& app);

// Enables the view's buttons, options and menu entries exactly when they can do something, and
// shows whether there is something to save. To be called after every event of the view.
void showSceneryCommands(App& app);

void optCopy_Click(App& app);
void optMove_Click(App& app);
void optScenery_Click(App& app);
void optTextures_Click(App& app);

}  // namespace skv
