#include "platform/x11/x11_windows.h"

#include <algorithm>
#include <string>

#include "base/text.h"

namespace skv {

namespace {

// Frames hold frames, and dialogs belong to dialogs, but not deeper than this. Keeps a circle from
// being walked for ever.
constexpr int deepest = 16;
// What a window manager tells of a frame's edges is believed up to here.
constexpr std::uint32_t widestEdge = 512;
constexpr std::uint32_t onAllDesktops = 0xffffffff;

std::string titleOf(const X11Connection& server, xcb_window_t window) {
  std::string title = server.bytes(window, "_NET_WM_NAME");
  if (title.empty()) title = server.bytes(window, "WM_NAME");
  return isUtf8(title) ? title : CodePage().decode(title);
}

// A window manager that has gone leaves its lists behind.
bool isManaged(const X11Connection& server) {
  const xcb_window_t manager = server.number(server.root(), "_NET_SUPPORTING_WM_CHECK");
  return manager && server.number(manager, "_NET_SUPPORTING_WM_CHECK") == manager;
}

bool managerDoes(const X11Connection& server, const char* what) {
  if (!isManaged(server)) return false;
  const auto supported = server.numbers(server.root(), "_NET_SUPPORTED");
  return std::find(supported.begin(), supported.end(), server.atom(what)) != supported.end();
}

// The program's window in a frame: older window managers list none, but mark those that they keep.
std::optional<xcb_window_t> markedWindow(const X11Connection& server, xcb_window_t window,
                                         int depth = 0) {
  if (!server.numbers(window, "WM_STATE").empty()) return window;
  if (depth < 4)
    for (const xcb_window_t child : server.childrenOf(window))
      if (const auto marked = markedWindow(server, child, depth + 1)) return marked;
  return std::nullopt;
}

// On return the window manager has got it, before whatever another program tells it later.
void tellManager(const X11Connection& server, xcb_window_t window, const char* what,
                 std::uint32_t first, std::uint32_t second) {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = server.atom(what);
  message.data.data32[0] = first;
  message.data.data32[1] = second;
  (void)server.succeeds(xcb_send_event_checked(
      server.get(), 0, server.root(),
      XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
      reinterpret_cast<const char*>(&message)));
}

// From the topmost down.
std::vector<xcb_window_t> programWindows(const X11Connection& server) {
  std::vector<xcb_window_t> windows;
  if (isManaged(server)) {
    windows = server.numbers(server.root(), "_NET_CLIENT_LIST_STACKING");
    if (windows.empty()) windows = server.numbers(server.root(), "_NET_CLIENT_LIST");
  }
  if (windows.empty())
    for (const xcb_window_t child : server.childrenOf(server.root()))
      windows.push_back(markedWindow(server, child).value_or(child));
  std::reverse(windows.begin(), windows.end());
  return windows;
}

xcb_window_t topOf(const X11Connection& server, xcb_window_t window) {
  for (int depth = 0; depth < deepest; ++depth) {
    const xcb_window_t parent = server.parentOf(window);
    if (!parent || parent == server.root()) break;
    window = parent;
  }
  return window;
}

xcb_window_t keyboardOwner(const X11Connection& server) {
  const X11Reply<xcb_get_input_focus_reply_t> reply(
      xcb_get_input_focus_reply(server.get(), xcb_get_input_focus(server.get()), nullptr));
  return reply ? reply->focus : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

void giveKeyboard(const X11Connection& server, xcb_window_t window) {
  (void)server.succeeds(xcb_set_input_focus_checked(server.get(), XCB_INPUT_FOCUS_POINTER_ROOT,
                                                    window, server.now()));
}

void raise(const X11Connection& server, xcb_window_t window) {
  const std::uint32_t above = XCB_STACK_MODE_ABOVE;
  xcb_configure_window(server.get(), window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
}

// Without a window manager that does it the window is shown, raised and given the keyboard by us.
void activateByHand(const X11Connection& server, xcb_window_t window) {
  xcb_map_window(server.get(), window);
  for (const xcb_window_t each : {topOf(server, window), window}) raise(server, each);
  giveKeyboard(server, window);
}

bool hasKeyboard(const X11Connection& server, xcb_window_t window) {
  xcb_window_t focus = keyboardOwner(server);
  for (int depth = 0; focus && focus != window && depth < deepest; ++depth)
    focus = server.parentOf(focus);
  return focus && focus == window;
}

bool hasFront(const X11Connection& server, xcb_window_t window) {
  xcb_window_t active = server.number(server.root(), "_NET_ACTIVE_WINDOW");
  for (int depth = 0; active && active != window && depth < deepest; ++depth)
    active = server.number(active, "WM_TRANSIENT_FOR");
  return active && active == window;
}

struct Edges {
  int left = 0, right = 0, top = 0, bottom = 0;
};

std::optional<Edges> edges(const X11Connection& server, xcb_window_t window, const char* property) {
  const auto told = server.numbers(window, property);
  if (told.size() != 4 || *std::max_element(told.begin(), told.end()) > widestEdge)
    return std::nullopt;
  return Edges{static_cast<int>(told[0]), static_cast<int>(told[1]), static_cast<int>(told[2]),
               static_cast<int>(told[3])};
}

PixelRect grown(const PixelRect& rect, const Edges& by, int sign) {
  return {rect.x - sign * by.left, rect.y - sign * by.top, rect.width + sign * (by.left + by.right),
          rect.height + sign * (by.top + by.bottom)};
}

}  // namespace

PixelRect PixelRect::within(const PixelRect& other) const {
  const int left = std::max(x, other.x), top = std::max(y, other.y);
  return {left, top, std::min(x + width, other.x + other.width) - left,
          std::min(y + height, other.y + other.height) - top};
}

std::optional<HeldWindow> findWindow(const X11Connection& server, std::string_view title,
                                     xcb_window_t preferred) {
  const std::string wanted = upper(title);
  std::optional<HeldWindow> best;
  int bestRank = 0;
  const auto look = [&](xcb_window_t window, xcb_window_t holder) {
    const std::string its = upper(titleOf(server, window));
    if (!its.starts_with(wanted)) return;
    const int rank = 1 + (its == wanted ? 4 : 0) + (window == preferred ? 2 : 0) +
                     (server.isViewable(window) ? 1 : 0);
    if (rank <= bestRank) return;
    bestRank = rank;
    best = {window, holder};
  };
  const auto windows = programWindows(server);
  for (const xcb_window_t window : windows) look(window, window);
  if (best) return best;
  for (const xcb_window_t holder : windows) {
    auto inside = server.childrenOf(holder);
    std::reverse(inside.begin(), inside.end());
    for (const xcb_window_t window : inside) look(window, holder);
  }
  return best;
}

std::optional<std::uint32_t> otherDesktopOf(const X11Connection& server, xcb_window_t window) {
  const auto its = server.numbers(window, "_NET_WM_DESKTOP");
  const auto shown = server.numbers(server.root(), "_NET_CURRENT_DESKTOP");
  if (its.size() != 1 || shown.size() != 1 || its == shown || its.front() == onAllDesktops ||
      !managerDoes(server, "_NET_CURRENT_DESKTOP"))
    return std::nullopt;
  return its.front();
}

void showDesktop(const X11Connection& server, std::uint32_t desktop) {
  tellManager(server, server.root(), "_NET_CURRENT_DESKTOP", desktop, server.now());
}

X11Front currentFront(const X11Connection& server) {
  X11Front front;
  const auto shown = server.numbers(server.root(), "_NET_CURRENT_DESKTOP");
  if (!shown.empty() && managerDoes(server, "_NET_CURRENT_DESKTOP")) front.desktop = shown.front();
  if (!managerDoes(server, "_NET_ACTIVE_WINDOW")) front.keyboard = keyboardOwner(server);
  return front;
}

void restoreFront(const X11Connection& server, const X11Front& front) {
  if (front.desktop && server.number(server.root(), "_NET_CURRENT_DESKTOP") != *front.desktop)
    showDesktop(server, *front.desktop);
  if (front.keyboard) giveKeyboard(server, *front.keyboard);
}

void askToActivate(const X11Connection& server, const HeldWindow& window) {
  // Among its neighbours: no window manager looks after those.
  if (window.held()) raise(server, window.window);
  // As a task bar asks: it is the user who wants this window, and not a program that pushes its own
  // to the front, which window managers refuse.
  if (managerDoes(server, "_NET_ACTIVE_WINDOW"))
    tellManager(server, window.holder, "_NET_ACTIVE_WINDOW", 2, server.now());
  else
    activateByHand(server, window.holder);
}

bool isActive(const X11Connection& server, const HeldWindow& window) {
  if (!server.isViewable(window.window)) return false;
  return managerDoes(server, "_NET_ACTIVE_WINDOW") ? hasFront(server, window.holder)
                                                   : hasKeyboard(server, window.holder);
}

std::optional<FramedWindow> framedWindow(const X11Connection& server, const HeldWindow& held) {
  const xcb_window_t window = held.window;
  FramedWindow framed;
  framed.top = held.held() ? window : topOf(server, window);
  const auto geometryOf = [&server](xcb_window_t which) {
    return X11Reply<xcb_get_geometry_reply_t>(
        xcb_get_geometry_reply(server.get(), xcb_get_geometry(server.get(), which), nullptr));
  };
  const auto top = geometryOf(framed.top), inner = geometryOf(window);
  const X11Reply<xcb_translate_coordinates_reply_t> place(xcb_translate_coordinates_reply(
      server.get(), xcb_translate_coordinates(server.get(), window, framed.top, 0, 0), nullptr));
  const X11Reply<xcb_get_window_attributes_reply_t> look(xcb_get_window_attributes_reply(
      server.get(), xcb_get_window_attributes(server.get(), framed.top), nullptr));
  const X11Reply<xcb_translate_coordinates_reply_t> corner(xcb_translate_coordinates_reply(
      server.get(), xcb_translate_coordinates(server.get(), framed.top, server.root(), 0, 0),
      nullptr));
  if (!top || !inner || !place || !look || !corner) return std::nullopt;

  framed.visual = look->visual;
  framed.border = top->border_width;
  framed.outer = {-framed.border, -framed.border, top->width + 2 * framed.border,
                  top->height + 2 * framed.border};
  framed.desktop = {-corner->dst_x, -corner->dst_y, server.screen().width_in_pixels,
                    server.screen().height_in_pixels};
  framed.seen = framed.outer;
  const PixelRect program{place->dst_x, place->dst_y, inner->width, inner->height};
  if (const auto shadow = edges(server, window, "_GTK_FRAME_EXTENTS")) {
    // The program draws its frame itself, and a shadow around it.
    framed.seen = grown(program, *shadow, -1);
  } else if (const auto frame = edges(server, window, "_NET_FRAME_EXTENTS")) {
    // The frame's window may be wider than what is seen of it, by an edge to be taken hold of.
    framed.seen = grown(program, *frame, 1);
    if (framed.top != window) framed.seen = framed.seen.within(framed.outer);
  }
  return framed;
}

}  // namespace skv
