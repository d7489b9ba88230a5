// Pixels as graphics cards have them compressed: in blocks of four by four.
//
//   [DXT3: 8 bytes]   an alpha of four bits for each pixel
//   4 bytes           two colours of 16 bits, the ends of a scale
//   4 bytes           a place on that scale of two bits for each pixel, row after row
#pragma once

#include <QIODevice>
#include <QImage>

namespace skv {

enum class TextureBlocks { dxt1, dxt3 };

// Fills the image, of Format_ARGB32, from its top left. False when the file ends before.
bool decodeBlocks(QIODevice& file, TextureBlocks kind, QImage& image);

}  // namespace skv
