// Passwords in the keeping of the desktop.
#pragma once

#include <string>
#include <string_view>

#include "base/outcome.h"

namespace skv {

class Secrets {
 public:
  virtual ~Secrets() = default;
  // The password kept under this name, "" for none. Fails with deviceUnavailable when the desktop
  // keeps no passwords, with permissionDenied when it would not give it out.
  virtual Result<std::string> read(std::string_view name) = 0;
  // Keeps a password; "" removes it. Fails as read does.
  virtual Outcome write(std::string_view name, std::string_view password) = 0;
};

}  // namespace skv
