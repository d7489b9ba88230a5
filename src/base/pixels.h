// A picture in memory, as it comes from a file, the clipboard or the screen and goes to them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace skv {

// Rows from the top, each of blue, green, red for a pixel, and padded to four bytes.
struct Pixels {
  int width = 0, height = 0;
  std::vector<std::uint8_t> rows;

  std::size_t rowBytes() const { return (static_cast<std::size_t>(width) * 3 + 3) / 4 * 4; }
};

}  // namespace skv
