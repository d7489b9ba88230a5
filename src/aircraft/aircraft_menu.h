// The context menu of an aircraft row. "View Aircraft.cfg" and the transfer are the operations of
// the menu bar and of btnHangar.
#pragma once

#include "core/app.h"

namespace skv {

// Opens the selected aircraft's folder in the desktop's file manager.
void mnuListOpen_Click(App& app);
// Puts the folder's Windows path on the clipboard, as the simulator's own files would name it.
void mnuListCopy_Click(App& app);
void mnuListRename_Click(App& app);

}  // namespace skv
