// The one current error: set by any failed step, kept until cleared, looked at only at checkpoints.
#pragma once

#include <utility>

#include "base/outcome.h"

namespace skv {

class ErrorState {
 public:
  // Notes a failed outcome; a success leaves an error that is pending. Answers whether the step
  // went well.
  bool note(const Outcome& outcome) {
    if (!outcome.ok()) current_ = outcome;
    return outcome.ok();
  }
  bool pending() const { return !current_.ok(); }
  const Outcome& current() const { return current_; }
  void clear() { current_ = {}; }

 private:
  Outcome current_;
};

}  // namespace skv
