// Bitmaps as the programs of Windows and OS/2 write them, and the simulator's textures, which are
// bitmaps, too.
//
//   file header: 14 bytes     "BM", size of the file, 4 bytes without meaning, where the pixels
//   begin header: 12 to 124 bytes   its size, width, height, planes, depth, compression, ...
//   [masks] [colour table]    which bits of a pixel are which colour; what its number stands for
//   ["FS70" ...: 20 bytes]    of the simulator's textures
//   rows                      from the bottom, or from the top where the height is below zero
#pragma once

#include <QIODevice>
#include <QImage>
#include <array>
#include <optional>

namespace skv {

struct BitmapHeader {
  qint64 width = 0, height = 0;
  bool topDown = false;
  int depth = 0;  // bits for a pixel
  quint32 compression = 0;
  std::array<quint32, 4> masks{};  // red, green, blue, alpha; 0 for none
  qint64 coloursAt = 0, pixelsAt = 0;
  int colourBytes = 4;  // for a colour of the table
  int colours = 0;      // in the table
};

// Of the file from its beginning. None when that is cut short or a size is not above zero.
std::optional<BitmapHeader> bitmapHeader(QIODevice& file);

// The whole picture, upright: what no byte of the file tells has the table's first colour. Null for
// a kind that is not read, and when the file ends before its picture.
QImage decodeBitmap(QIODevice& file);

}  // namespace skv
