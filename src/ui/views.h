// The walk through the views, the tabs and the layout of the main window.
#pragma once

#include "core/app.h"

namespace skv {

// Reloads the current view.
void mnuViewRefresh_Click(App& app);
// The Scenery Manager, anew where it is shown already, unless edits in the Info tab or changes in
// it have to stay.
void leaveForScenery(App& app);
// One of the two aircraft views, unless changes in the Scenery Manager have to stay.
void leaveForAircraft(App& app, void (*view)(App&));

// The frames walk through the views: simulator, Hangar, scenery.
void frameAircraft_DblClick(App& app);
void frameScenery_DblClick(App& app);

// `index` from 0; one outside the strip does nothing.
void tabAddon_Click(App& app, int index);
void tabACInfo_Click(App& app, int index);

// `y` is the pointer's offset in the bar, in twips.
void lblSepBar_MouseDown(App& app, ui::MouseButton button);
void lblSepBar_MouseMove(App& app, int y);
void lblSepBar_MouseUp(App& app, ui::MouseButton button);

// In the normal state the window's height follows its width, and the width has a least value.
void Form_Resize(App& app);

}  // namespace skv
