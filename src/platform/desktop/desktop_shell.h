// Programs of the desktop, found as the desktop's own file managers find them.
#pragma once

#include <string>
#include <vector>

#include "platform/platform.h"

namespace skv {

class DesktopShell : public Shell {
 public:
  explicit DesktopShell(const FileSystem& files) : files_(files) {}
  int open(std::string_view target) override;
  Outcome editText(std::string_view path) override;

 private:
  const FileSystem& files_;
};

// The command line of a desktop entry's Exec value with the file in place of its field codes; the
// file at the end when there is none. Empty when the value cannot be read.
std::vector<std::string> desktopCommand(const std::string& exec, const std::string& file);

}  // namespace skv
