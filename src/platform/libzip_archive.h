// An archive that is open for reading, and what its directory says.
#pragma once

#include <zip.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/outcome.h"
#include "base/text.h"
#include "platform/file_system.h"
#include "platform/zipit.h"

namespace skv {

struct ZipDiscard {
  void operator()(zip_t *archive) const { zip_discard(archive); }
};
using ZipHandle = std::unique_ptr<zip_t, ZipDiscard>;

struct ArchiveEntry {
  std::string Filename;     // decoded, separators as stored
  std::uint64_t size = 0;   // bytes, once unpacked
  std::uint64_t packed = 0; // bytes in the archive
  std::uint32_t crc = 0;
  // From the local header to the end of the data, in bytes from the file's
  // start; `end` is 0 when that is not in the file.
  std::uint64_t begin = 0, end = 0;
  int method = 0; // ZIP_CM_...
  bool encrypted = false;
  bool special = false; // a link, a device: no plain file and no folder
  std::optional<FileTime> modified;
};

// Opens the file at a native path for reading.
Result<ZipHandle> openZip(const std::string &native, const std::string &shown);

// The entries in the order of the directory, each with the finest time that it
// has.
Result<std::vector<ArchiveEntry>> readDirectory(zip_t *archive,
                                                const std::string &native,
                                                const std::string &shown,
                                                const CodePage &systemPage);

// Whether these entries can be what the archive says: plain files whose data
// lies in the file and apart from all others, packed as this program can unpack
// it, and none larger than its packed form can become. `shown` is the archive's
// path for messages.
Outcome auditArchive(const std::string &shown,
                     const std::vector<const ArchiveEntry *> &entries);

// The failure of an entry, in words that name it and its archive.
Outcome entryFailure(const std::string &archive, const std::string &entry,
                     const std::string &what);

} // namespace skv
