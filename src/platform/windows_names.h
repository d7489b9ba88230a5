// Windows paths taken apart, and what Windows lets a name be.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/outcome.h"

namespace skv {

// "C:\FS2002\aircraft" is {'c', {"FS2002", "aircraft"}}; a root has no elements.
struct DrivePath {
  char drive = 'c';  // lower case
  std::vector<std::string> elements;

  // With the drive in upper case; no trailing backslash, but for a root.
  std::string text() const;
};

// Resolves "." and "..", never climbing above the drive, and drops what Windows drops. `current` is
// what a path without drive or root starts from. Fails with fileNotFound on an empty path, with
// badFileName on a name that Windows refuses, with pathNotFound on a network path.
Result<DrivePath> parseWindowsPath(std::string_view path, const DrivePath& current);

// Whether a path can only mean a folder, since it ends in a separator.
bool meansFolder(std::string_view path);

// Whether Windows lets a file have exactly this name. One that it refuses no path can lead to.
bool isWindowsName(std::string_view name);

// NTFS's order of two names in upper case: by their UTF-16 units.
bool ntfsLess(std::string_view upperA, std::string_view upperB);

}  // namespace skv
