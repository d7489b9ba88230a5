// The machine's clock.
#pragma once

#include "platform/platform.h"

namespace skv {

class SystemClock : public Clock {
 public:
  double now() const override;
};

}  // namespace skv
