// The life of the main window: the whole start-up and the whole shutdown of the program.
#pragma once

#include <string>

#include "core/app.h"

namespace skv {

// The running version, as in 0.06.0129.
std::string versionText();

// Before anything else: whether the settings are there to be read. When they are not, the user is
// told why and may have it tried again; after a No the program must end, without touching anything.
bool settingsCanBeRead(ui::Windowing& windows, SettingsStore& settings);

// Paths, working folder, splash, window state, settings, lists. Ends with the window on screen, or
// with App::ending set: the user has chosen to quit, or there is no working folder. False for that
// alone, which has been told.
bool Form_Load(App& app);

// The window is to be closed. True when it may be at once. Otherwise the user has been asked, about
// edits that are not saved or whether to wait for a running operation; with App::stopRequested set
// the program is to ask again as soon as none runs.
bool frmMain_QueryUnload(App& app);

// Stores the window state, the look of the lists and the selected row, and puts the windows away.
void Form_Unload(App& app);

}  // namespace skv
