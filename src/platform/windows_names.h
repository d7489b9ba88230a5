// Windows paths taken apart by Windows' rules, before anything reaches the disk.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/outcome.h"

namespace skv {

struct WindowsPath {
  char drive = 'c';                   // lower case
  std::vector<std::string> elements;  // from the drive's root; empty for the root itself
};

// Whether Windows takes `name` as the name of a file or folder: no reserved character, no control
// character, no device.
bool isWindowsName(std::string_view name);

// Takes a path apart. Both kinds of slash separate; "." and ".." resolve and never climb above the
// drive; trailing dots and blanks of an element are dropped. `current` is where a relative path
// starts. Fails with badFileName for what Windows refuses and with pathNotFound for a network path.
Result<WindowsPath> parseWindowsPath(std::string_view path, const WindowsPath& current);

// "C:\a\b\", always with a trailing backslash.
std::string folderText(const WindowsPath& path);

}  // namespace skv
