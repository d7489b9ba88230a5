// Which names stand in a folder, asked without regard to case.
//
// A folder is read once and then kept current by the system's own reports of change, so that many
// questions about one folder cost one reading. Where the system cannot report every change (a disk
// of the network, no reports left to have) each question reads the folder.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <list>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/outcome.h"
#include "platform/disk/native_calls.h"

namespace skv {

// May be asked from several threads.
class FolderIndexes {
 public:
  FolderIndexes();

  // How `name` is spelled in the folder at the native path: as given where that stands there, else
  // the first of those that differ in case alone, "" when there is none. `lasting`, when given, is
  // set to whether the answer holds for as long as generation() stays the same.
  Result<std::string> spelling(const std::string& folder, std::string_view name,
                               bool* lasting = nullptr);
  std::uint64_t generation();

 private:
  struct Spellings {
    std::vector<std::string> names;
    bool lasting = false;  // an answer that somebody relies on
  };
  using Names = std::unordered_map<std::string, Spellings>;  // by upper case
  using Identity = std::pair<dev_t, ino_t>;
  struct Index {
    Identity folder;
    int watch = -1;
    Names names;
  };
  using Place = std::list<Index>::iterator;

  int scan(const std::string& folder, Index& index);
  void applyChanges();
  void apply(Place index, bool stands, const std::string& name);
  void forget(Place index);
  void drop(Place index);  // leaves the watch
  void forgetAll();

  std::mutex mutex_;
  Descriptor changes_;
  std::uint64_t generation_ = 0;
  std::list<Index> indexes_;  // the last used first
  std::map<Identity, Place> byFolder_;
  std::unordered_map<int, Place> byWatch_;
};

}  // namespace skv
