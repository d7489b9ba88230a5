// Packing many files at once.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/outcome.h"
#include "base/text.h"
#include "platform/file_system.h"

namespace skv {

struct Packing {
  std::string archive; // Windows path of the new archive
  std::string
      folder; // Windows path that the names are relative to, with backslash
  std::vector<std::string> names; // stored exactly so
  int level = 9;                  // 0 to 9
};

// Packs on two processors and puts the archive under its name when it is
// complete, in the place of an older one. `progress` is called now and then on
// the calling thread. On a failure nothing is left.
Outcome packFiles(FileSystem &files, const CodePage &systemPage,
                  const Packing &job,
                  const std::function<void(int percent)> &progress);

} // namespace skv
