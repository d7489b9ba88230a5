// Where else a scenery of the library is: in the simulator, and as a Package.
#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>

#include "core/app.h"

namespace skv {

// The path to which a row's "Folder:" leads. Most are relative to FSRoot; an area may lie anywhere.
std::string sceneryFolder(const App& app, const std::string& Folder);

// Reads each folder that it needs once. Good until the next change on disk.
class SceneryPlaces {
 public:
  explicit SceneryPlaces(App& app) : app_(app) {}
  // The small icon of a library row: 1 only in the library, 2 the folder stands in the simulator,
  // 3 there is a Package, 4 both.
  int icon(const std::string& Folder);

 private:
  using Names = std::unordered_map<std::string, bool>;  // upper case; whether it is a folder
  bool stands(const std::string& path, bool wantsFile);

  App& app_;
  std::unordered_map<std::string, Names> folders_;  // by path in upper case
};

}  // namespace skv
