// The installer of sceneries: an archive of any layout becomes a scenery of the library.
//
// What makes it a scenery is a folder with ".BGL" files. One that is named "Scenery" belongs to
// what lies beside it, so its parent is taken; any other is taken for such a folder itself:
//
//   Alps\Scenery\a.bgl, Alps\Texture\a.bmp    Scenery\a.bgl, Texture\a.bmp
//   Files\a.bgl, Texture\a.bmp                Scenery\a.bgl, and Main\Alps\Texture\a.bmp
#pragma once

#include "core/app.h"

namespace skv {

// Takes PendingZIP, or asks for an archive. The view stays what it is. Answers whether the scenery
// is installed; the user has been told why not.
bool mnuFileInstallSC_Click(App& app);
// Adds the row that a scenery of the library lacks when an earlier run was cut short before its
// end. `name`: of its folder. False when it could not be listed, which the user is told.
bool listInstalledSC(App& app, const std::string& name);

}  // namespace skv
