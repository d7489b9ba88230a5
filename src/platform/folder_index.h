// The names in a folder, found without regard to case.
//
// The kernel reports every change of an indexed folder before the next question is answered, so an
// answer is never stale, whoever changes the folder. Where the kernel cannot promise that (network
// disks, no watch left) the folder is read for each question.
#pragma once

#include <cstdint>
#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/os_error.h"

namespace skv {

class FolderIndex {
 public:
  FolderIndex();
  FolderIndex(const FolderIndex&) = delete;
  FolderIndex& operator=(const FolderIndex&) = delete;

  // The name on disk that is `name` in other letters; of several the first by its bytes. None when
  // there is none, or no such folder. May be called from several threads.
  std::optional<std::string> find(const std::string& nativeFolder, const std::string& name);

 private:
  using Spellings = std::unordered_map<std::string, std::vector<std::string>>;  // by upper case
  struct Folder {
    Spellings names;
    std::list<int>::iterator use;
  };

  void drainEvents();
  Folder* watched(const std::string& nativeFolder);
  void forget(int watch);

  std::mutex mutex_;
  Descriptor inotify_;
  std::unordered_map<int, Folder> folders_;  // by watch
  std::list<int> used_;                      // watches, the one used last in front
};

}  // namespace skv
