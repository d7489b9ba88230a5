// Names of entries: from the bytes in an archive to a place below the folder of an extraction.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/outcome.h"
#include "base/text.h"

namespace skv {

// What decides how an entry's name is to be read.
struct StoredName {
  std::string bytes;
  int hostSystem = 0;       // of the archive's maker: 0 FAT, 3 Unix, 11 NTFS, ...
  std::string unicodeName;  // of the extra field that repeats the name in UTF-8, when it holds
};

// The host system under which our own archives are made: its names are in the system's code page.
inline constexpr int ntfsHost = 11;

// Names that are valid UTF-8 are that, flagged or not: text of another code page hardly ever is by
// chance. Others are what the maker's system used: the system's code page on NTFS, else page 437,
// unless bytes occur in the name that are no letters there; those are the system's page as well.
// Some archivers note NTFS and use page 437 all the same; the u with dots gives them away.
std::string decodeEntryName(const StoredName& stored, const CodePage& systemPage);

// The entry's path below a folder, element by element, as Windows can hold it. Both slashes
// separate, letters and accents are put together; what Windows refuses in a name becomes "_", and a
// device name gets one in front. Fails for a name that leads out of the folder (absolute, with a
// drive, through "..") or is longer or deeper than any honest one. Empty for the folder itself.
Result<std::vector<std::string>> entryPath(std::string_view name);

inline bool isFolderName(std::string_view name) {
  return name.ends_with('/') || name.ends_with('\\');
}

}  // namespace skv
