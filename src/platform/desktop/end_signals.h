// The signals by which a system ends its programs: at a logout, at a shutdown, by a user's kill.
#pragma once

#include "platform/disk/os_error.h"

namespace skv {

// Keeps the first one from ending the program; a second one that comes before it has been answered
// does end it. One object at a time.
class EndSignals {
 public:
  EndSignals();
  ~EndSignals();
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;

  // Can be read from when a signal has come; -1 when the system gives no descriptor, and then
  // signals end the program as ever.
  int descriptor() const { return wake_.get(); }
  // The program stays: the next signal is the first one again.
  void answer();
  // Ends the program as the signal would have.
  [[noreturn]] static void obey();

 private:
  void listen() const;
  Descriptor wake_;
};

}  // namespace skv
