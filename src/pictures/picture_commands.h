// What a user does with a picture: its menu, a new one by each of three ways, taking it away.
#pragma once

#include <string>

#include "core/app.h"

namespace skv {

// The right button makes the image the one that the picture commands work on, and opens their menu.
void imgAircraft_MouseDown(App& app, ui::MouseButton button);
void imgPanel_MouseDown(App& app, ui::MouseButton button);
void imgScenery_MouseDown(App& app, ui::MouseButton button);
// The same for the picture of the panel.
void lstACVersions_MouseDown(App& app, ui::MouseButton button);

// The menu has gone, or another tab shows: a picture that is not seen is no longer meant.
void mnuPic_Closed(App& app);

// The three ways to a new picture. One of the user's own is replaced after a question.
// Each ends in the add-on's own picture file.
void mnuPicSnap_Click(App& app);
void mnuPicClip_Click(App& app);
void mnuPicFile_Click(App& app);
// What "Picture from File..." does with a file that was chosen, for that image.
void takePictureFile(App& app, ui::Image& image, const std::string& path);

void mnuPicDel_Click(App& app);

}  // namespace skv
