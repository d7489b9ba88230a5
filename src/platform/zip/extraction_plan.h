// Where the entries of an extraction go.
#pragma once

#include <string>
#include <vector>

#include "platform/zip/archive_directory.h"
#include "platform/zipit.h"

namespace skv {

struct ExtractionPlan {
  struct Target {
    ChosenEntry entry;
    std::string folder;  // Windows path, without trailing backslash
    std::string name;
  };
  std::vector<std::string> folders;  // Windows paths, each after the one above it
  std::vector<Target> files;         // those of one folder together
  std::vector<RenamedEntry> renamed;
  std::uint64_t bytes = 0;  // of all files
};

// Of entries with one name, in whatever letters, the last one is the file; those of different names
// have different targets, also where the disk can take neither name. Fails for names that lead out
// of `folder`, and where an entry is a file and another one needs a folder. Without
// `keepFolders` all files go into `folder` itself.
Result<ExtractionPlan> planExtraction(const std::string& archive,
                                      const std::vector<ChosenEntry>& chosen,
                                      const std::string& folder, bool keepFolders);

}  // namespace skv
