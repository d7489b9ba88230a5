// What the desktop says of light and dark.
#pragma once

namespace skv::ui::qt {

// Whether the user prefers dark windows: by the palette that Qt got from the desktop, and where Qt
// knows nothing of the desktop's choice, by the desktop's own answer. False when nobody tells.
bool desktopPrefersDark();

}  // namespace skv::ui::qt
