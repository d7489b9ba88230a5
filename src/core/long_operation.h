// For the time of a long operation the main window takes no input and the pointer is the hourglass.
// Both come back with the object's end, on whatever way out, to what they were before: operations
// nest, and a nested one leaves the window as the outer one wants it.
#pragma once

#include "core/app.h"

namespace skv {

// The hourglass alone, over a window that stays enabled. The outermost one begins an operation: a
// wish to stop that was meant for an earlier one is forgotten.
class HourglassPointer {
 public:
  explicit HourglassPointer(App& app) : app_(app) {
    if (app_.hourglasses++ > 0) return;
    app_.stopRequested = false;
    app_.windows.setPointer(ui::Pointer::hourglass);
  }
  ~HourglassPointer() {
    if (--app_.hourglasses == 0) app_.windows.setPointer(ui::Pointer::normal);
  }
  HourglassPointer(const HourglassPointer&) = delete;
  HourglassPointer& operator=(const HourglassPointer&) = delete;

 private:
  App& app_;
};

// A window that takes no input, with whatever pointer.
class DisabledForm {
 public:
  explicit DisabledForm(ui::Form& form) : form_(form), wasEnabled_(form.enabled) {
    form_.enabled = false;
  }
  ~DisabledForm() { form_.enabled = wasEnabled_; }
  DisabledForm(const DisabledForm&) = delete;
  DisabledForm& operator=(const DisabledForm&) = delete;

 private:
  ui::Form& form_;
  const bool wasEnabled_;
};

class LongOperation {
 public:
  explicit LongOperation(App& app) : window_(app.frmMain), pointer_(app) {}

 private:
  DisabledForm window_;
  HourglassPointer pointer_;
};

}  // namespace skv
