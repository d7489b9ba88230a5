// Which of the three views the main window shows.
#pragma once

#include "core/app.h"

namespace skv {

// Shows the frames of a view, enables the menu entries that it has and checks its own. The two
// aircraft views set App::aircraftView and the captions that follow it; the Scenery Manager leaves
// them, since they still tell the last aircraft view.
void showView(App& app, View view);

// Whether the simulator's aircraft, or the Hangar's, are (or were last) the current ones.
inline bool inFSView(const App& app) { return app.aircraftView == View::fsAircraft; }
inline bool inHangarView(const App& app) { return app.aircraftView == View::hangar; }

}  // namespace skv
