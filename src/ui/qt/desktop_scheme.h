// What the desktop says of light, dark and contrast.
#pragma once

namespace skv::ui::qt {

struct DesktopScheme {
  bool dark = false;
  bool highContrast = false;
};

// What the user prefers: by the palette that Qt got from the desktop, and where Qt knows nothing of
// the desktop's choice, by the desktop's own answer. All false when nobody tells.
DesktopScheme desktopScheme();

}  // namespace skv::ui::qt
