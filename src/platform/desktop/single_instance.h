// One run of the program at a time for a user: start-up empties the working folder of any other.
#pragma once

#include <string>

#include "base/outcome.h"
#include "platform/disk/os_error.h"

namespace skv {

class SingleInstance {
 public:
  // The lock goes with the object, and with a process that is killed. Fails with permissionDenied
  // and a text for the user while another run holds it. `folder` is a native path, made when it is
  // missing.
  static Result<SingleInstance> acquire(const std::string& folder);
  // In the user's runtime folder, or the configuration folder where there is none.
  static Result<SingleInstance> acquire();

 private:
  explicit SingleInstance(Descriptor lock) : lock_(std::move(lock)) {}
  Descriptor lock_;
};

}  // namespace skv
