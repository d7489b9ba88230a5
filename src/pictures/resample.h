// Bilinear scaling of pictures of three bytes a pixel.
#pragma once

#include <cstddef>
#include <cstdint>

namespace skv {

// Rows as they lie in memory, each of `width` pixels of three bytes and padded to `rowBytes`.
template <class Byte>
struct PixelRows {
  Byte* bytes;
  int width, height;
  std::size_t rowBytes;
};

// Fills the target. Everything is computed in single precision: the source's last row and column
// against the whole size of the target, first along y and then along x, each result rounded to the
// nearest integer, ties to the even one. The bytes that pad the target's rows are left alone.
void resampleRows(const PixelRows<const std::uint8_t>& source,
                  const PixelRows<std::uint8_t>& target);

}  // namespace skv
