// Unpacking many entries at once.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/libzip_archive.h"

namespace skv {

struct Extraction {
  std::string native;              // the archive, a native path
  std::string shown;               // the same for messages
  std::string folder;              // Windows path of the target
  std::vector<std::size_t> chosen; // places in the archive's directory
  const std::vector<ArchiveEntry> *entries = nullptr;
};

// Unpacks on two processors. `progress` is called now and then on the calling
// thread, with the part that is done in percent. Stops at the first entry that
// cannot be unpacked; what was complete by then stays.
Outcome extractEntries(FileSystem &files, const Extraction &job,
                       const std::function<void(int percent)> &progress);

} // namespace skv
