#include "platform/x11/x11_screen.h"

#include <xcb/composite.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <thread>
#include <utility>

#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_image.h"
#include "platform/x11/x11_windows.h"

namespace skv {

namespace {

constexpr long long mostPixels = 100'000'000;

Outcome noServer() {
  return Outcome::withText(err::deviceUnavailable,
                           "There is no X server, so no window of another program can be reached.");
}

Outcome noWindow(std::string_view why) {
  return Outcome::withText(err::invalidProcedureCall, std::string(why));
}

// From now on the server keeps the whole of the window, whatever covers it or sticks out of the
// screen, until the connection ends. A compositing window manager has asked for the same already,
// which does no harm.
void keepWhole(const X11Connection& server, const HeldWindow& window) {
  if (!server.composes()) return;
  const auto framed = framedWindow(server, window);
  if (framed)
    (void)server.succeeds(xcb_composite_redirect_window_checked(server.get(), framed->top,
                                                                XCB_COMPOSITE_REDIRECT_AUTOMATIC));
}

// `part` of the picture, which was counted from the same corner as `whole`, on a white ground of
// the size of `whole`.
Pixels onWhite(const Pixels& picture, const PixelRect& part, const PixelRect& whole) {
  Pixels page{whole.width, whole.height, {}};
  page.rows.assign(page.rowBytes() * static_cast<std::size_t>(whole.height), 255);
  for (int y = 0; y < part.height; ++y)
    std::copy_n(
        picture.rows.data() + picture.rowBytes() * static_cast<std::size_t>(y), 3 * part.width,
        page.rows.data() + page.rowBytes() * static_cast<std::size_t>(part.y - whole.y + y) +
            std::ptrdiff_t{3} * (part.x - whole.x));
  return page;
}

Result<Pixels> fromComposer(const X11Connection& server, const FramedWindow& framed) {
  const xcb_pixmap_t pixmap = xcb_generate_id(server.get());
  if (!server.succeeds(xcb_composite_name_window_pixmap_checked(server.get(), framed.top, pixmap)))
    return noWindow("The window is not kept by the server.");
  const PixelRect part = framed.seen.within(framed.outer);
  auto image = imageOf(server, pixmap, framed.visual,
                       {part.x + framed.border, part.y + framed.border, part.width, part.height});
  xcb_free_pixmap(server.get(), pixmap);
  if (!image.ok() || (part.width == framed.seen.width && part.height == framed.seen.height))
    return image;
  return onWhite(image.value(), part, framed.seen);
}

Result<Pixels> capture(const X11Connection& server, const HeldWindow& window) {
  const auto framed = framedWindow(server, window);
  if (!framed) return noWindow("The window has gone.");
  if (!server.isViewable(framed->top)) return noWindow("The window is not on the screen.");
  if (framed->seen.within(framed->outer).empty()) return noWindow("The window has no size.");
  if (static_cast<long long>(framed->seen.width) * framed->seen.height > mostPixels)
    return Outcome::failure(err::invalidPicture, "more than 100 million pixels");
  if (server.composes())
    if (auto whole = fromComposer(server, *framed); whole.ok()) return whole;
  // As it is seen. What sticks out of the screen has no pixels.
  const PixelRect part = framed->seen.within(framed->outer);
  const PixelRect there = part.within(framed->desktop);
  if (there.width != part.width || there.height != part.height)
    return noWindow(
        "A part of the window is off the screen. Move the whole window onto the screen, and try "
        "again.");
  return imageOf(server, framed->top, framed->visual, part);
}

}  // namespace

X11Screen::X11Screen(std::function<void()> meanwhile, const X11Patience& patience)
    : meanwhile_(std::move(meanwhile)), patience_(patience) {}
X11Screen::~X11Screen() = default;

bool X11Screen::waitUntil(const std::function<bool()>& condition, int milliseconds) const {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + std::chrono::milliseconds(milliseconds);
  while (!condition()) {
    if (Clock::now() >= end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    if (meanwhile_) meanwhile_();
  }
  return true;
}

bool X11Screen::comesToFront(const X11Connection& server, const HeldWindow& window) const {
  bool gone = false;
  return waitUntil(
             [&] {
               gone = !server.exists(window.window);
               return gone || isActive(server, window);
             },
             patience_.activation) &&
         !gone;
}

void X11Screen::giveBack(const X11Connection& server) {
  if (const auto before = std::exchange(before_, nullptr)) restoreFront(server, *before);
}

Outcome X11Screen::activate(std::string_view title, bool wait) {
  if (!server_ || xcb_connection_has_error(server_->get())) server_ = X11Connection::open();
  // Its own hold: what runs meanwhile may ask for a window, too.
  const std::shared_ptr<X11Connection> server = server_;
  if (!server) return noServer();
  const auto window = findWindow(*server, title, window_);
  if (!window) return noWindow("There is no window \"" + std::string(title) + "\".");
  if (window_ != window->window) keepWhole(*server, *window);
  window_ = window->window;
  holder_ = window->holder;
  if (!before_) before_ = std::make_unique<X11Front>(currentFront(*server));
  if (const auto other = otherDesktopOf(*server, window->holder)) showDesktop(*server, *other);
  askToActivate(*server, *window);
  if (!wait) return {};
  if (!comesToFront(*server, *window)) {
    giveBack(*server);
    server_.reset();
    return noWindow("The window does not come to the front.");
  }
  (void)waitUntil([] { return false; }, patience_.drawing);
  return {};
}

Result<Pixels> X11Screen::captureActiveWindow() {
  const std::shared_ptr<X11Connection> server = std::exchange(server_, nullptr);
  const HeldWindow window{std::exchange(window_, 0), std::exchange(holder_, 0)};
  if (!server || !window.window) return noWindow("No window was activated.");
  auto picture = capture(*server, window);
  giveBack(*server);
  return picture;
}

}  // namespace skv
