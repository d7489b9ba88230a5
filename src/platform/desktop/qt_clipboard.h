// The desktop's clipboard, by Qt.
#pragma once

#include "platform/pictures.h"

namespace skv {

// Lives on the thread of the window.
class QtClipboard : public Clipboard {
 public:
  Result<Pixels> picture() override;
  Outcome putPicture(const Pixels& picture) override;
};

}  // namespace skv
