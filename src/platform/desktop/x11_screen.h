// The windows of other programs on an X server.
#pragma once

#include "platform/pictures.h"

namespace skv {

class X11Screen : public Screen {
 public:
  Outcome activate(std::string_view title, bool wait) override;
  Result<Pixels> captureActiveWindow() override;
};

}  // namespace skv
