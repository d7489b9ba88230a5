// The two list files of the Scenery Manager, as plain values. Lines end in CR LF, fields are
// separated by the character of code 1, shown here as a bar.
//
// SKV_SC.lst, in the simulator's folder, is a cache of the rows of Scenery.cfg. It holds for the
// one time of last change of that file that is its first line, in days since 30 December 1899:
//
//   37654.4537152778
//   True|Rome|ADDON SCENERY\Rome|002|2|002||||
//   False|Default Terrain|Scenery\World|001|1|001||1||
//
// SKV_SL.lst, in the library's folder, is the only record of the library:
//
//   Rome|ADDON SCENERY\Rome|||||||
//
// Fields that a line lacks are empty, surplus ones are dropped.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "scenery/scenery_row.h"

namespace skv {

inline constexpr const char* sceneryCacheFile = "SKV_SC.lst";
inline constexpr const char* sceneryLibraryFile = "SKV_SL.lst";

struct SceneryCache {
  double stamp = 0;  // 0 for a first line that is no number: such a cache holds for no file
  std::vector<SceneryRow> rows;
};

SceneryCache parseSceneryCache(std::string_view bytes, const CodePage& codePage);
// Rows that would not read back as they are make a cache of the stamp 0.
std::string sceneryCacheBytes(const SceneryCache& cache, const CodePage& codePage);

std::vector<SceneryRow> parseSceneryLibrary(std::string_view bytes, const CodePage& codePage);
// What would break the format becomes a blank.
std::string sceneryLibraryBytes(const std::vector<SceneryRow>& rows, const CodePage& codePage);

}  // namespace skv
