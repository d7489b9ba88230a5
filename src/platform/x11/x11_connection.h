// A connection of our own to the X server, beside the one that draws our windows.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace skv {

struct FreeReply {
  void operator()(void* reply) const { std::free(reply); }
};
// What the server answered; none when it answered with an error, as it does about a window that
// has closed meanwhile.
template <class T>
using X11Reply = std::unique_ptr<T, FreeReply>;

// Errors never end the program: those of requests without an answer are dropped, or asked for by
// succeeds().
class X11Connection {
 public:
  // The server of $DISPLAY; none when there is no such server or it refuses us.
  static std::unique_ptr<X11Connection> open();
  ~X11Connection();
  X11Connection(const X11Connection&) = delete;
  X11Connection& operator=(const X11Connection&) = delete;

  xcb_connection_t* get() const { return connection_; }
  const xcb_setup_t& setup() const { return *xcb_get_setup(connection_); }
  const xcb_screen_t& screen() const { return screen_; }
  xcb_window_t root() const { return screen_.root; }
  // Whether it names the whole picture of a redirected window.
  bool composes() const { return composes_; }

  // A name of the protocol between programs and window managers.
  xcb_atom_t atom(const char* name) const;
  // A property's bytes, up to 64 KB; "" when the window has none of that name.
  std::string bytes(xcb_window_t window, const char* property) const;
  // A property of windows, atoms or plain numbers.
  std::vector<std::uint32_t> numbers(xcb_window_t window, const char* property) const;
  // Its first number, 0 when there is none.
  std::uint32_t number(xcb_window_t window, const char* property) const;

  bool isViewable(xcb_window_t window) const;
  bool exists(xcb_window_t window) const;
  // 0 for the root window and for one that has gone.
  xcb_window_t parentOf(xcb_window_t window) const;
  std::vector<xcb_window_t> childrenOf(xcb_window_t window) const;

  // The server's clock, by which window managers judge whose wish is newer; 0 when it is not told.
  xcb_timestamp_t now() const;
  // Of a checked request.
  bool succeeds(xcb_void_cookie_t request) const;

 private:
  X11Connection(xcb_connection_t* connection, const xcb_screen_t& screen);

  xcb_connection_t* connection_;
  const xcb_screen_t& screen_;  // lives as long as the connection
  bool composes_;
};

}  // namespace skv
