// One row of the two scenery lists, and the one place where rows and areas become each other.
#pragma once

#include <string>

#include "core/app.h"
#include "scenery/scenery_cfg.h"

namespace skv {

// In the order of the lists' columns; all but the name are sub-items.
struct SceneryRow {
  std::string Name = {};
  std::string Folder = {};  // relative to FSRoot; its last element names the scenery in the library
  std::string Area = {};    // number of the area that the row came from, three digits
  std::string Layer = {};   // as the file spelled it
  std::string SortLayer = {};  // the layer as three digits or more: the sort key of lstScenery
  std::string RemPath = {};    // the area's Remote
  std::string Texture_ID = {};
  std::string Flatten = {};  // all values of it, joined by the character of code 5
  std::string Exclude = {};
  bool active = false;  // the check mark, in lstScenery alone
};

namespace sceneryColumn {
inline constexpr int Folder = 1, Area = 2, Layer = 3, SortLayer = 4, RemPath = 5, Texture_ID = 6,
                     Flatten = 7, Exclude = 8;
}

inline constexpr char valueSeparator = '\x05';
inline constexpr ui::Colour builtInColour = 255;  // red

SceneryRow rowOfArea(const SceneryArea& area);
SceneryArea areaOfRow(SceneryRow row);

SceneryRow rowAt(const ui::ListView& list, int row);
// At the end of the list.
int addRow(ui::ListView& list, SceneryRow row);
void insertRow(ui::ListView& list, SceneryRow row, int position = 1);
// The first row with that name on disk, without regard to case; 0 for none.
int rowOfLeaf(const ui::ListView& list, const std::string& leaf);

// A layer as the sort key: rounded to a whole number, at least three digits.
std::string sortLayer(const std::string& layer);
// Orders lstScenery by "SortLayer" as text, the highest one on top.
void sortByLayer(ui::ListView& list);

// Whether an area is one of the simulator's own, which are shown in red and never deleted.
bool IsBuiltInArea(const SceneryRow& row);
// The last element of "Folder:", the scenery's name on disk; "" for a folder that ends in "\".
std::string leafOf(const std::string& Folder);

}  // namespace skv
