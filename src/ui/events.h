// Ties the events of the controls to the operations of the program.
#pragma once

#include "core/app.h"

namespace skv {

// Call once for an App, before Form_Load. Entries whose operation does not exist are disabled.
void connectEvents(App& app);

}  // namespace skv
