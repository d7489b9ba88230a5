// What the three images of the main window show, and what the menu of the pictures can do about it.
#pragma once

#include "core/app.h"

namespace skv {

// The picture of the variation that the Info tab shows, with the label of a specimen.
void showAircraftPicture(App& app);
// The picture in PanelPicDir: of the panel that the variation uses, or of a library row.
void showPanelPicture(App& app);
void showLibraryPanelPicture(App& app);
// The picture in the folder that imgScenery has as its tag.
void showSceneryPicture(App& app);
// Whichever it is: the first three by what shows now.
void showPictureOf(App& app, const ui::Image& image);

// No picture of an aircraft and none of a panel.
void clearAircraftPictures(App& app);

// Enables what can be done with the picture in use.
void showPictureCommands(App& app);

}  // namespace skv
