// Packing many files at once.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "base/outcome.h"
#include "platform/file_system.h"

namespace skv {

struct Packing {
  struct File {
    std::string path;  // Windows path
    std::string name;  // in the archive, exactly so
    std::uint64_t length = 0;
    FileTime modified;
  };
  std::string archive;  // Windows path of the new archive
  std::vector<File> files;
  int level = 9;          // 0 (stored) to 9
  bool replaces = false;  // an archive of that name, which else stays and is a failure
};

// Packs on two processors and puts the archive under its name when it is complete.
// `progress` is called often on the calling thread and answers whether to go on. On a
// failure nothing is left.
Outcome packFiles(FileSystem& files, const Packing& job,
                  const std::function<bool(int percent)>& progress);

}  // namespace skv
