// Names of entries: from the bytes in an archive to a place below the folder of an extraction.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/outcome.h"
#include "base/text.h"

namespace skv {

// Names that are valid UTF-8 are that, flagged or not: text of another code page hardly ever is by
// chance. Others are what the maker's system used: the system's code page on NTFS, else page 437,
// unless bytes occur in the name that are no letters there; those are the system's page as well.
// Some archivers note NTFS and use page 437 all the same; the u with dots gives them away.
// `host`: the system of the archive's maker: 0 FAT, 3 Unix, 11 NTFS, ...
std::string decodeEntryName(const std::string& stored, int host, const CodePage& systemPage);

// One name of an entry's path, put together from letters and accents, and as Windows can hold it:
// what it refuses in a name becomes "_", and a device name gets one in front.
struct PathElement {
  std::string name, held;
};
// The entry's path below a folder. Both slashes separate; one slash in front of all, or a drive, is
// left out. Fails for a name that leads out of the folder (to another server, through "..") or is
// longer or deeper than any honest one. Empty for the folder itself.
Result<std::vector<PathElement>> entryPath(std::string_view name);

inline bool isFolderName(std::string_view name) {
  return name.ends_with('/') || name.ends_with('\\');
}

}  // namespace skv
