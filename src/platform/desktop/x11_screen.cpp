#include "platform/desktop/x11_screen.h"

#include <string>

namespace skv {

Outcome X11Screen::activate(std::string_view title, bool) {
  return Outcome::failure(err::invalidProcedureCall, std::string(title));
}

Result<Pixels> X11Screen::captureActiveWindow() {
  return Outcome::failure(err::invalidProcedureCall, "no X server");
}

}  // namespace skv
