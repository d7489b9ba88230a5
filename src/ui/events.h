// Ties the events of the controls to the operations of the program.
#pragma once

#include "core/app.h"

namespace skv {

// Call once for an App, before Form_Load. A control without an operation is drawn disabled.
void connectEvents(App& app);

}  // namespace skv
