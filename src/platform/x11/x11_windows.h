// The windows of other programs: which there are, how one comes to the front, how large it is.
#pragma once

#include <xcb/xcb.h>

#include <optional>
#include <string_view>

#include "platform/x11/x11_connection.h"

namespace skv {

// A window, and the one that holds it for the window manager: itself, except on a desktop that
// Wine keeps in a window of its own.
struct HeldWindow {
  xcb_window_t window = 0, holder = 0;
  bool held() const { return window != holder; }
};

// The window whose title is this one, whatever the case of its letters; else one whose title begins
// with it. Of several: one of the window manager's, then `preferred`, then one that is not put
// away, then the topmost.
std::optional<HeldWindow> findWindow(const X11Connection& server, std::string_view title,
                                     xcb_window_t preferred);

// The number of the desktop that a window is on; none when it can be seen on the one that is shown.
std::optional<std::uint32_t> otherDesktopOf(const X11Connection& server, xcb_window_t window);
void showDesktop(const X11Connection& server, std::uint32_t desktop);

// What an activation changes beside the windows, as it was before.
struct X11Front {
  std::optional<std::uint32_t> desktop;
  // Whose the keyboard is where no window manager hands it out.
  std::optional<xcb_window_t> keyboard;
};
X11Front currentFront(const X11Connection& server);
void restoreFront(const X11Connection& server, const X11Front& front);

// Asks for it only. The window manager decides, and takes its time.
void askToActivate(const X11Connection& server, const HeldWindow& window);

// Whether the window, or a dialog that belongs to it, has the keyboard and is there to be seen.
bool isActive(const X11Connection& server, const HeldWindow& window);

struct PixelRect {
  int x = 0, y = 0, width = 0, height = 0;

  bool empty() const { return width <= 0 || height <= 0; }
  PixelRect within(const PixelRect& other) const;
};

// Where a window is seen with its frame.
struct FramedWindow {
  // Holds the frame and the program's window in it; the program's window where there is no other,
  // and where another window holds it.
  xcb_window_t top = 0;
  xcb_visualid_t visual = 0;
  int border = 0;     // of `top`, around its origin
  PixelRect outer;    // `top` with its border, counted from its origin
  PixelRect seen;     // counted from the same. Reaches out of `outer` where the frame is drawn by a
                      // desktop that has no X window for it
  PixelRect desktop;  // the screen, counted from the same
};

// None when the window has gone.
std::optional<FramedWindow> framedWindow(const X11Connection& server, const HeldWindow& held);

}  // namespace skv
