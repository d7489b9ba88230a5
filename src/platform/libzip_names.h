// Names of entries: from the bytes in an archive to a place below the folder of
// an extraction.
#pragma once

#include <zip.h>

#include <string>
#include <string_view>
#include <vector>

#include "base/outcome.h"
#include "base/text.h"

namespace skv {

// What decides how an entry's name is to be read.
struct StoredName {
  std::string bytes;
  bool flaggedUtf8 = false;
  int hostSystem =
      0; // of the archive's maker: 0 FAT, 3 Unix, 11 NTFS, 19 Mac OS X
  std::string unicodeName; // of the extra field that repeats the name in UTF-8,
                           // when it holds
};

// Flagged names and those of the extra field are UTF-8. Unflagged ones are what
// the maker's system used: UTF-8 on Unix, where they are valid UTF-8; the
// system's code page on NTFS; else page 437.
std::string decodeEntryName(const StoredName &stored,
                            const CodePage &systemPage);

// The entry's path below a folder, element by element, as Windows can hold it.
// Both slashes separate; what Windows refuses in a name becomes "_". Fails for
// a name that leads out of the folder: absolute, with a drive, or through "..".
// Empty for the folder itself.
Result<std::vector<std::string>> entryPath(std::string_view name);

inline bool isFolderName(std::string_view name) {
  return name.ends_with('/') || name.ends_with('\\');
}

} // namespace skv
