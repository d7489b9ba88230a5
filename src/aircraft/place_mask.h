// Where an aircraft lives: in the simulator, as a Package, in the Hangar. All tests go by the name
// of its folder, not by the path of its row.
#pragma once

#include <string>
#include <unordered_set>

#include "core/app.h"

namespace skv {

enum PlaceBit : int {
  inSimulator = 1,  // a folder FSRoot + "aircraft\" + name
  inPackage = 2,    // a file PacksDir + name + ".zip"
  inHangar = 4,     // a folder HangarDir + "aircraft\" + name
};

// The places of one aircraft, asked of the disk.
int PlaceMask(App& app, const std::string& folderName);

// The same for many aircraft: reads the three folders once. Good until the next change on disk.
class PlaceIndex {
 public:
  explicit PlaceIndex(App& app);
  int mask(const std::string& folderName) const;

 private:
  App& app_;
  std::unordered_set<std::string> simulator_, packages_, hangar_;  // names in upper case
};

// A row's picture is its mask plus 1.
inline int placeIcon(int mask) { return mask + 1; }
// The mask of a row of lstAircraft: by its picture, or by the disk for a row that has none yet.
int rowMask(App& app, int row);

// The folder of another row of lstAircraft, below the Hangar's aircraft root, that has the name of
// `folder`; "" for none. Two such aircraft share a Package and a folder below "Main": nothing tells
// to which of them these belong.
std::string namesakeInHangar(const App& app, const std::string& folder);

}  // namespace skv
