// Windows paths taken apart, and what Windows lets a name be.
#pragma once

#include <string>
#include <string_view>

#include "base/outcome.h"

namespace skv {

// "C:\FS2002\aircraft" is {'c', "FS2002/aircraft"}; of a root nothing follows.
struct DrivePath {
  char drive = 'c';   // lower case
  std::string below;  // the elements, a slash between two

  bool isRoot() const { return below.empty(); }
  // The last element; not of a root.
  std::string_view name() const;
  // The folder in which the last element stands; not of a root.
  DrivePath folder() const;
  // With the drive in upper case; no trailing backslash, but for a root.
  std::string text() const;
};

// Resolves "." and "..", never climbing above the drive, and drops what Windows drops. `current` is
// what a path without drive or root starts from. Fails with fileNotFound on an empty path, with
// badFileName on a name that Windows refuses, with pathNotFound on a network path.
Result<DrivePath> parseWindowsPath(std::string_view path, const DrivePath& current);

// Whether a path says drive and root, so that no current folder counts.
bool isFullPath(std::string_view path);

// Whether a path can only mean a folder, since it ends in a separator.
bool meansFolder(std::string_view path);

// Whether Windows lets a file have exactly this name. One that it refuses no path can lead to.
bool isWindowsName(std::string_view name);

// NTFS's order of two names in upper case: by their UTF-16 units.
bool ntfsLess(std::string_view upperA, std::string_view upperB);

}  // namespace skv
