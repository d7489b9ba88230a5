#include "platform/desktop/texture_blocks.h"

#include <QtEndian>
#include <algorithm>
#include <array>

#include "base/colour_channel.h"

namespace skv {

namespace {

constexpr int side = 4;
constexpr qsizetype alphaBytes = 8, colourBytes = 8;

QRgb fullColour(quint16 pixel) {
  return qRgb(ColourChannel(0xF800).of(pixel), ColourChannel(0x7E0).of(pixel),
              ColourChannel(0x1F).of(pixel));
}

// `parts` of the first colour and the rest of the second, of `all`.
QRgb between(QRgb first, QRgb second, int parts, int all) {
  const auto mixed = [=](int a, int b) { return (a * parts + b * (all - parts) + all / 2) / all; };
  return qRgb(mixed(qRed(first), qRed(second)), mixed(qGreen(first), qGreen(second)),
              mixed(qBlue(first), qBlue(second)));
}

// DXT1 has a scale of three colours and clear, too, and says so by the order of the two ends.
std::array<QRgb, 4> scaleOf(const char* block, TextureBlocks kind) {
  const auto from = qFromLittleEndian<quint16>(block), to = qFromLittleEndian<quint16>(block + 2);
  const QRgb first = fullColour(from), last = fullColour(to);
  if (kind == TextureBlocks::dxt1 && from <= to)
    return {first, last, between(first, last, 1, 2), qRgba(0, 0, 0, 0)};
  return {first, last, between(first, last, 2, 3), between(first, last, 1, 3)};
}

void decodeBlock(const char* block, TextureBlocks kind, QImage& image, int left, int top) {
  const bool alpha = kind == TextureBlocks::dxt3;
  const auto opacities = alpha ? qFromLittleEndian<quint64>(block) : 0;
  if (alpha) block += alphaBytes;
  const auto scale = scaleOf(block, kind);
  const auto places = qFromLittleEndian<quint32>(block + 4);
  for (int y = 0; y < std::min(side, image.height() - top); ++y) {
    auto* const row = reinterpret_cast<QRgb*>(image.scanLine(top + y)) + left;
    for (int x = 0; x < std::min(side, image.width() - left); ++x) {
      const int pixel = y * side + x;
      row[x] = scale[places >> 2 * pixel & 3];
      if (alpha)
        row[x] = (row[x] & 0xFFFFFF) | static_cast<QRgb>(opacities >> 4 * pixel & 15) * 17 << 24;
    }
  }
}

}  // namespace

bool decodeBlocks(QIODevice& file, TextureBlocks kind, QImage& image) {
  const qsizetype blockBytes = kind == TextureBlocks::dxt3 ? alphaBytes + colourBytes : colourBytes;
  const qsizetype rowBytes = (image.width() + side - 1) / side * blockBytes;
  for (int top = 0; top < image.height(); top += side) {
    const QByteArray row = file.read(rowBytes);
    if (row.size() != rowBytes) return false;
    for (int left = 0; left < image.width(); left += side)
      decodeBlock(row.constData() + left / side * blockBytes, kind, image, left, top);
  }
  return true;
}

}  // namespace skv
