// The life of the main window: the whole start-up and the whole shutdown of the program.
#pragma once

#include <string>

#include "core/app.h"

namespace skv {

// The running version, as in 0.06.0129.
std::string versionText();

// Paths, working folder, splash, window state, settings, lists. Ends with the window on screen,
// except when the working folder cannot be made: then the window comes up without lists and
// settings.
void Form_Load(App& app);

// Stores the window state and the selected row, and puts the windows away.
void Form_Unload(App& app);

}  // namespace skv
