// A Windows metafile, made ready to be drawn: the library draws what it finds to the edges of its
// picture, where a metafile says itself which part of the plane is the picture.
//
//   [placeable header: 22 bytes]  magic, bounds, units for an inch
//   header: 18 bytes              type, 9, version, size of all, objects, largest record, 0
//   records                       size in words, function, parameters; the last has function 0
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace skv {

struct Metafile {
  std::vector<std::uint8_t> bytes;  // a plain metafile
  // Of the picture in pixels. 0 when the metafile does not say: then it is as large as what is
  // drawn.
  int width = 0, height = 0;
};

// No larger than `longestSide` either way. With the picture's size known, the result draws it to a
// viewport of that size at the origin. Without `letters` no text is left. None when a record or the
// end is missing.
std::optional<Metafile> readMetafile(std::span<const std::uint8_t> file, int longestSide,
                                     bool letters);

}  // namespace skv
