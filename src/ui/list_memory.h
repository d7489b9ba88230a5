// How the lists looked at the end of the last run: widths of columns, room beside and below them,
// order of the aircraft.
#pragma once

#include "core/app.h"

namespace skv {

void storeLists(App& app);
// Widths and room; a stored value that does not fit its list is passed over.
void restoreLists(App& app);
// The order of lstAircraft, once its rows are there.
void restoreOrder(App& app);

}  // namespace skv
