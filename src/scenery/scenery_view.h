// The Scenery Manager's view.
#pragma once

#include "core/app.h"

namespace skv {

void mnuViewFSScenery_Click(App& app);

}  // namespace skv
