// The desktop's clipboard, by Qt.
#pragma once

#include "platform/pictures.h"

namespace skv {

// Lives on the thread of the window. A program that holds the picture and does not answer is waited
// for as long as Qt does, some seconds.
class QtClipboard : public Clipboard {
 public:
  Result<Pixels> picture() override;
  Outcome putPicture(const Pixels& picture) override;
};

}  // namespace skv
