// One run of the program at a time for a user: start-up empties the working folder of any other.
#pragma once

#include <optional>
#include <string>

#include "platform/os_error.h"

namespace skv {

class SingleInstance {
 public:
  // None when another run holds the lock. The lock goes with the object, and with a process that is
  // killed. `folder` is a native path, made when it is missing.
  static std::optional<SingleInstance> acquire(const std::string& folder);
  // In the user's runtime folder, or the configuration folder where there is none.
  static std::optional<SingleInstance> acquire();

 private:
  explicit SingleInstance(Descriptor lock) : lock_(std::move(lock)) {}
  Descriptor lock_;
};

}  // namespace skv
