// For the time of a long operation the main window takes no input and the pointer is the hourglass;
// both end with the object, on whatever way out.
#pragma once

#include "core/app.h"

namespace skv {

class LongOperation {
 public:
  explicit LongOperation(App& app) : app_(app) {
    app_.frmMain.enabled = false;
    app_.windows.setPointer(ui::Pointer::hourglass);
  }
  ~LongOperation() {
    app_.frmMain.enabled = true;
    app_.windows.setPointer(ui::Pointer::normal);
  }
  LongOperation(const LongOperation&) = delete;
  LongOperation& operator=(const LongOperation&) = delete;

 private:
  App& app_;
};

}  // namespace skv
