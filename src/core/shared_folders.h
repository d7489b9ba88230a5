// The simulator's folders that all add-ons share: Gauges, Sound, Texture, Effects.
#pragma once

#include <string>

#include "core/app.h"
#include "core/walktree.h"

namespace skv {

// Copies what an add-on keeps for one of them. The shared folder is made when it is clearly missing
// and there is something to copy. `overwrite` as in WalkTree.
WalkReport fillSharedFolder(App& app, const std::string& source, const std::string& shared,
                            bool overwrite);

}  // namespace skv
