// For the time of a long operation the main window takes no input and the pointer is the hourglass.
// Both come back with the object's end, on whatever way out, to what they were before: operations
// nest, and a nested one leaves the window as the outer one wants it.
#pragma once

#include "core/app.h"

namespace skv {

// What the status line shows while a walk goes through a folder (see WalkTree).
inline constexpr const char* walkStatus = "Processing: ";

// An operation that the user may wish to stop. The wish goes with the outermost one, so that it
// never meets another, and neither does one that came while none ran.
class StoppableOperation {
 public:
  explicit StoppableOperation(App& app) : app_(app) {
    if (app_.operations++ == 0) app_.stopRequested = false;
  }
  ~StoppableOperation() {
    if (--app_.operations > 0) return;
    app_.stopRequested = false;
    // Whatever way out was taken, no walk goes on. Other texts may have to stay.
    auto& status = app_.frmMain.lblStatus.caption;
    if (status.get().starts_with(walkStatus)) status = "";
  }
  StoppableOperation(const StoppableOperation&) = delete;
  StoppableOperation& operator=(const StoppableOperation&) = delete;

 private:
  App& app_;
};

// The hourglass alone, over a window that stays enabled.
class HourglassPointer {
 public:
  explicit HourglassPointer(App& app) : app_(app), operation_(app) {
    if (app_.hourglasses++ == 0) app_.windows.setPointer(ui::Pointer::hourglass);
  }
  ~HourglassPointer() {
    if (--app_.hourglasses == 0) app_.windows.setPointer(ui::Pointer::normal);
  }
  HourglassPointer(const HourglassPointer&) = delete;
  HourglassPointer& operator=(const HourglassPointer&) = delete;

 private:
  App& app_;
  StoppableOperation operation_;
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

// Whether anything is at work for which others have to wait.
inline bool operationRuns(const App& app) { return !app.frmMain.enabled || app.operations > 0; }

}  // namespace skv
