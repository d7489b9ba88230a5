// The context menus of the two scenery lists.
#pragma once

#include "core/app.h"

namespace skv {

// Open the selected row's folder in the desktop's file manager, and copy its path.
void mnuSCOpen_Click(App& app);
void mnuSCCopy_Click(App& app);
void mnuSLOpen_Click(App& app);
void mnuSLCopy_Click(App& app);

}  // namespace skv
