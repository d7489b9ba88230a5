// frmShowPic: a picture at its full size.
#pragma once

#include "core/app.h"

namespace skv {

// Open the viewer on what the image shows. Without a picture nothing opens.
void imgAircraft_Click(App& app);
void imgPanel_Click(App& app);
void imgScenery_Click(App& app);

void imgShowPic_Click(App& app);

}  // namespace skv
