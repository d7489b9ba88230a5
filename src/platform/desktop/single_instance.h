// One run of the program at a time for a user: start-up empties the working folder of any other. A
// second start asks the first one for its window, and ends.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "base/outcome.h"
#include "platform/disk/os_error.h"

namespace skv {

class SingleInstance {
 public:
  // The number of the outcome that says that another run holds the lock.
  static constexpr int alreadyRunning = err::fileExists;

  // The lock goes with the object, and with a process that is killed. Every failure has a text for
  // the user. `folder` is a native path, made when it is missing.
  static Result<SingleInstance> acquire(const std::string& folder);
  // Where the settings lie: the one place that all of a user's logins share.
  static Result<SingleInstance> acquire();

  // A descriptor that can be read from while a second start asks for the window; -1 on a disk that
  // takes no sockets.
  int calls() const { return calls_.get(); }
  // Answers one that asks. The text is its leave to take the keyboard, as the desktop gave it to
  // what was started last; "" where the desktop gives none.
  std::optional<std::string> answerCall() const;

  // Asks the run that holds the lock for its window. True when it has answered within the time.
  static bool call(const std::string& folder, std::chrono::milliseconds time);
  static bool call();

 private:
  SingleInstance(Descriptor lock, Descriptor calls)
      : lock_(std::move(lock)), calls_(std::move(calls)) {}
  Descriptor lock_, calls_;
};

}  // namespace skv
