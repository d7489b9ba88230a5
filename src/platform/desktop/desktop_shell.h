// Programs of the desktop, found as the desktop's own file managers find them.
#pragma once

#include "platform/platform.h"

namespace skv {

class DesktopShell : public Shell {
 public:
  explicit DesktopShell(const FileSystem& files) : files_(files) {}
  int open(std::string_view target) override;
  bool hasProgramFor(std::string_view mediaType) override;
  Outcome editText(std::string_view path) override;

 private:
  const FileSystem& files_;
};

}  // namespace skv
