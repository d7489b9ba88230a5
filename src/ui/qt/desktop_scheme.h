// What the desktop says of light, dark and contrast.
#pragma once

class QPalette;
class QTimer;

namespace skv::ui::qt {

struct DesktopScheme {
  bool dark = false;
  bool highContrast = false;
  unsigned told = 0;  // by the desktop of dark and light, in its own numbers; 0 for no preference
};

// What the user prefers: by the palette that Qt got from the desktop, and where Qt knows nothing of
// the desktop's choice, by the desktop's own answer. All false when nobody tells.
DesktopScheme desktopScheme(const QPalette& desktop);
// The same some time later, when the palette of the start may be out of date and the desktop's
// answer counts alone.
DesktopScheme schemeAfter(const DesktopScheme& before, const QPalette& desktop);

// Starts the timer whenever the desktop says that the user has chosen otherwise.
void startAtSchemeChanges(QTimer& timer);

}  // namespace skv::ui::qt
