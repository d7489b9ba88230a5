// Passwords in the keeping of the desktop. A call may take many seconds, in which the windows are
// drawn and take no input.
#pragma once

#include <string>
#include <string_view>

#include "base/outcome.h"

namespace skv {

class Secrets {
 public:
  virtual ~Secrets() = default;
  // The password kept under this name, "" for none. Fails with deviceUnavailable when the desktop
  // keeps no passwords, with permissionDenied when it does, and has not given it out.
  virtual Result<std::string> read(std::string_view name) = 0;
  // Keeps a password; "" removes it. Fails as read does.
  virtual Outcome write(std::string_view name, std::string_view password) = 0;
};

}  // namespace skv
