// What the directory of an archive says, and whether it can be true.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/outcome.h"
#include "base/text.h"
#include "platform/file_system.h"
#include "platform/zip/archive_file.h"

namespace skv {

struct ArchiveEntry {
  std::string Filename;      // decoded, separators as stored; of a folder with one at its end
  std::uint64_t size = 0;    // bytes, once unpacked
  std::uint64_t packed = 0;  // bytes in the archive
  std::uint32_t crc = 0;
  int method = 0;  // ZIP_CM_...
  bool encrypted = false;
  bool special = false;  // a link, a device: no plain file and no folder
  std::optional<FileTime> modified;
};

// The entries in the order of the directory, each with the finest time that it has.
Result<std::vector<ArchiveEntry>> readDirectory(const ArchiveFile& file, const ZipReader& reader,
                                                const CodePage& systemPage);

// An entry that is to be unpacked.
struct ChosenEntry {
  std::size_t index;  // in the directory
  const ArchiveEntry* entry;
  std::uint64_t data = 0;  // where its packed bytes begin in the file; nowhere when it has none
};

// Whether these entries can be what the archive says: plain files whose data lies in the file and
// apart from all others, packed as this program can unpack it, and none larger than its packed form
// can become. Fills in where the data lies.
Outcome auditArchive(const ArchiveFile& file, const ZipReader& reader,
                     std::vector<ChosenEntry>& chosen);

}  // namespace skv
