#include "platform/x11/x11_connection.h"

#include <xcb/composite.h>

#include <chrono>
#include <cstring>
#include <thread>

namespace skv {

namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t longestProperty = 64 * 1024;

bool namesPixmaps(xcb_connection_t* connection) {
  const xcb_query_extension_reply_t* extension =
      xcb_get_extension_data(connection, &xcb_composite_id);
  if (!extension || !extension->present) return false;
  const X11Reply<xcb_composite_query_version_reply_t> version(xcb_composite_query_version_reply(
      connection, xcb_composite_query_version(connection, 0, 4), nullptr));
  return version && (version->major_version > 0 || version->minor_version >= 2);
}

}  // namespace

std::unique_ptr<X11Connection> X11Connection::open() {
  int wanted = 0;
  xcb_connection_t* connection = xcb_connect(nullptr, &wanted);
  if (!xcb_connection_has_error(connection))
    for (auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection)); screens.rem > 0;
         xcb_screen_next(&screens))
      if (wanted-- == 0)
        return std::unique_ptr<X11Connection>(new X11Connection(connection, *screens.data));
  xcb_disconnect(connection);
  return nullptr;
}

X11Connection::X11Connection(xcb_connection_t* connection, const xcb_screen_t& screen)
    : connection_(connection), screen_(screen), composes_(namesPixmaps(connection)) {}

X11Connection::~X11Connection() { xcb_disconnect(connection_); }

xcb_atom_t X11Connection::atom(const char* name) const {
  const X11Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
      connection_,
      xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(std::strlen(name)), name),
      nullptr));
  return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

std::string X11Connection::bytes(xcb_window_t window, const char* property) const {
  const X11Reply<xcb_get_property_reply_t> reply(
      xcb_get_property_reply(connection_,
                             xcb_get_property(connection_, 0, window, atom(property),
                                              XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty / 4),
                             nullptr));
  if (!reply) return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

std::vector<std::uint32_t> X11Connection::numbers(xcb_window_t window, const char* property) const {
  const std::string value = bytes(window, property);
  std::vector<std::uint32_t> numbers(value.size() / sizeof(std::uint32_t));
  if (!numbers.empty())
    std::memcpy(numbers.data(), value.data(), numbers.size() * sizeof(std::uint32_t));
  return numbers;
}

std::uint32_t X11Connection::number(xcb_window_t window, const char* property) const {
  const auto all = numbers(window, property);
  return all.empty() ? 0 : all.front();
}

bool X11Connection::isViewable(xcb_window_t window) const {
  const X11Reply<xcb_get_window_attributes_reply_t> reply(xcb_get_window_attributes_reply(
      connection_, xcb_get_window_attributes(connection_, window), nullptr));
  return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

bool X11Connection::exists(xcb_window_t window) const {
  const X11Reply<xcb_get_window_attributes_reply_t> reply(xcb_get_window_attributes_reply(
      connection_, xcb_get_window_attributes(connection_, window), nullptr));
  return reply != nullptr;
}

xcb_window_t X11Connection::parentOf(xcb_window_t window) const {
  const X11Reply<xcb_query_tree_reply_t> reply(
      xcb_query_tree_reply(connection_, xcb_query_tree(connection_, window), nullptr));
  return reply ? reply->parent : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

std::vector<xcb_window_t> X11Connection::childrenOf(xcb_window_t window) const {
  const X11Reply<xcb_query_tree_reply_t> reply(
      xcb_query_tree_reply(connection_, xcb_query_tree(connection_, window), nullptr));
  if (!reply) return {};
  const xcb_window_t* first = xcb_query_tree_children(reply.get());
  return {first, first + xcb_query_tree_children_length(reply.get())};
}

// The server tells its time with events alone, so something has to change: a property of a window
// that nobody sees.
xcb_timestamp_t X11Connection::now() const {
  const xcb_window_t window = xcb_generate_id(connection_);
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(connection_, 0, window, root(), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                    XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
  xcb_change_property(connection_, XCB_PROP_MODE_APPEND, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING,
                      8, 0, nullptr);
  // The answer to this request comes after the event.
  const bool asked = succeeds(xcb_destroy_window_checked(connection_, window));
  xcb_timestamp_t time = XCB_CURRENT_TIME;
  while (X11Reply<xcb_generic_event_t> event{asked ? xcb_poll_for_event(connection_) : nullptr})
    if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY)
      time = reinterpret_cast<const xcb_property_notify_event_t*>(event.get())->time;
  return time;
}

bool X11Connection::succeeds(xcb_void_cookie_t request) const {
  const X11Reply<xcb_generic_error_t> error(xcb_request_check(connection_, request));
  return !error && !xcb_connection_has_error(connection_);
}

}  // namespace skv
