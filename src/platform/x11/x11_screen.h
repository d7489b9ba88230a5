// The windows of other programs on an X server, where Wine's live; on a Wayland desktop that is the
// server that it keeps for such programs.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/pictures.h"

namespace skv {

class X11Connection;
struct HeldWindow;
struct X11Front;

// In milliseconds.
struct X11Patience {
  int activation = 3000;  // until a window is at the front
  int drawing = 300;      // in which it draws what was covered
};

class X11Screen : public Screen {
 public:
  // `meanwhile` is called again and again while a window is waited for, so that ours stays alive.
  explicit X11Screen(std::function<void()> meanwhile = {}, const X11Patience& patience = {});
  ~X11Screen() override;

  // A window on another desktop is gone to. The desktop before comes back after the picture, or
  // when the window does not come to the front.
  Outcome activate(std::string_view title, bool wait) override;
  // With frame: what the desktop draws around the window. Where that is nothing that X knows, white
  // stands in its place, so that the picture has the same edges everywhere.
  Result<Pixels> captureActiveWindow() override;

 private:
  void giveBack(const X11Connection& server);
  bool comesToFront(const X11Connection& server, const HeldWindow& window) const;
  bool waitUntil(const std::function<bool()>& condition, int milliseconds) const;

  std::function<void()> meanwhile_;
  X11Patience patience_;
  // From an activation to the picture. What was asked of the server for it ends with the
  // connection.
  std::shared_ptr<X11Connection> server_;
  std::uint32_t window_ = 0, holder_ = 0;
  std::unique_ptr<X11Front> before_;
};

}  // namespace skv
