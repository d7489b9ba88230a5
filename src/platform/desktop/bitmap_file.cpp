#include "platform/desktop/bitmap_file.h"

#include <QtEndian>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "base/colour_channel.h"
#include "platform/desktop/texture_blocks.h"

namespace skv {

namespace {

constexpr qint64 fileHeader = 14, longestHeader = 124;
constexpr quint32 os2 = 12, os2Short = 16, windows = 40, withMasks = 52, withAlpha = 56,
                  version4 = 108;

enum Compression : quint32 {
  plain = 0,
  runsOf8 = 1,
  runsOf4 = 2,
  byMasks = 3,
  byMasksWithAlpha = 6,
  dxt1 = 0x31545844,  // these letters
  dxt3 = 0x33545844,
};

bool byAnyMasks(quint32 compression) {
  return compression == byMasks || compression == byMasksWithAlpha;
}

// The bytes of a header; those that it does not have are 0.
class Fields {
 public:
  explicit Fields(const QByteArray& bytes) {
    std::copy_n(bytes.begin(), std::min<qsizetype>(bytes.size(), longestHeader), bytes_.begin());
  }
  quint16 word(std::size_t at) const { return value<quint16>(at); }
  quint32 number(std::size_t at) const { return value<quint32>(at); }

 private:
  template <class T>
  T value(std::size_t at) const {
    return at + sizeof(T) <= bytes_.size() ? qFromLittleEndian<T>(bytes_.data() + at) : T{0};
  }
  std::array<char, longestHeader> bytes_{};
};

// Where they are told, else those that programs agree on.
std::array<quint32, 4> masksOf(const BitmapHeader& header, const Fields& told, quint32 size) {
  if (byAnyMasks(header.compression)) {
    const bool alpha = size >= withAlpha || header.compression == byMasksWithAlpha;
    return {told.number(0), told.number(4), told.number(8), alpha ? told.number(12) : 0};
  }
  if (header.depth == 16) return {0x7C00, 0x3E0, 0x1F, 0};
  // Some write an alpha without a word that masks are meant.
  const bool alpha = size >= version4 && told.number(12) == 0xFF000000;
  return {0xFF0000, 0xFF00, 0xFF, alpha ? 0xFF000000 : 0};
}

// Reads a file in blocks, since QIODevice takes its time for each byte.
class Bytes {
 public:
  explicit Bytes(QIODevice& file) : file_(file) {}
  // -1 at the end.
  int next() {
    if (at_ == length_) {
      length_ = file_.read(block_.data(), static_cast<qint64>(block_.size()));
      at_ = 0;
      if (length_ <= 0) {
        length_ = 0;
        return -1;
      }
    }
    return static_cast<unsigned char>(block_[static_cast<std::size_t>(at_++)]);
  }

 private:
  QIODevice& file_;
  std::array<char, 4096> block_;
  qint64 at_ = 0, length_ = 0;
};

using Colours = std::array<QRgb, 256>;

Colours coloursOf(QIODevice& file, const BitmapHeader& header) {
  Colours colours;
  colours.fill(qRgb(0, 0, 0));
  file.seek(header.coloursAt);
  const QByteArray table = file.read(qint64{header.colours} * header.colourBytes);
  for (qsizetype i = 0; (i + 1) * header.colourBytes <= table.size(); ++i) {
    const auto* from =
        reinterpret_cast<const unsigned char*>(table.constData()) + i * header.colourBytes;
    colours[static_cast<std::size_t>(i)] = qRgb(from[2], from[1], from[0]);
  }
  return colours;
}

QRgb* storedRow(QImage& image, const BitmapHeader& header, int row) {
  return reinterpret_cast<QRgb*>(image.scanLine(header.topDown ? row : image.height() - 1 - row));
}

// Two bytes: a number of pixels and their colour. A number of 0 begins something else.
bool decodeRuns(QIODevice& file, const BitmapHeader& header, const Colours& colours,
                QImage& image) {
  enum { endOfLine = 0, endOfPicture = 1, move = 2 };
  const int width = image.width(), height = image.height();
  const bool halves = header.compression == runsOf4;
  image.fill(colours[0]);
  Bytes bytes(file);
  int x = 0, y = 0;
  // Of the pixel that is the `index`th of those that the byte tells.
  const auto put = [&](int byte, int index) {
    if (x >= width) return;
    const int number = !halves ? byte : index % 2 == 0 ? byte >> 4 : byte & 15;
    storedRow(image, header, y)[x++] = colours[static_cast<std::size_t>(number)];
  };
  while (y < height) {
    const int count = bytes.next(), value = bytes.next();
    if (value < 0) return x == width && y == height - 1;  // the mark of the end may be missing
    if (count > 0) {
      for (int i = 0; i < count; ++i) put(value, i);
    } else if (value == endOfLine) {
      x = 0;
      ++y;
    } else if (value == endOfPicture) {
      return true;
    } else if (value == move) {
      const int right = bytes.next(), up = bytes.next();
      if (up < 0) return false;
      x = std::min(x + right, width);
      y += up;
    } else {
      int byte = 0;
      for (int i = 0; i < value; ++i) {
        if (!halves || i % 2 == 0) byte = bytes.next();
        if (byte < 0) return false;
        put(byte, i);
      }
      const int length = halves ? (value + 1) / 2 : value;
      if (length % 2 != 0) bytes.next();
    }
  }
  return true;
}

// Calls `convert` with the bytes of each row and where its pixels go.
template <class Convert>
bool decodeRows(QIODevice& file, const BitmapHeader& header, QImage& image, Convert convert) {
  std::vector<unsigned char> row(
      static_cast<std::size_t>((header.width * header.depth + 31) / 32 * 4));
  for (int y = 0; y < image.height(); ++y) {
    const auto length = static_cast<qint64>(row.size());
    if (file.read(reinterpret_cast<char*>(row.data()), length) != length) return false;
    convert(row.data(), storedRow(image, header, y));
  }
  return true;
}

bool decodeNumbers(QIODevice& file, const BitmapHeader& header, const Colours& colours,
                   QImage& image) {
  const int inByte = 8 / header.depth, mask = (1 << header.depth) - 1;
  return decodeRows(file, header, image, [&](const unsigned char* from, QRgb* to) {
    for (int x = 0; x < image.width(); ++x) {
      const int shift = 8 - header.depth * (x % inByte + 1);
      to[x] = colours[static_cast<std::size_t>(from[x / inByte] >> shift & mask)];
    }
  });
}

bool decodeMasked(QIODevice& file, const BitmapHeader& header, QImage& image) {
  const auto [redMask, greenMask, blueMask, alphaMask] = header.masks;
  const ColourChannel red(redMask), green(greenMask), blue(blueMask), alpha(alphaMask);
  if (!red.usable() && !green.usable() && !blue.usable()) return false;
  const auto of = [](const ColourChannel& channel, quint32 pixel) {
    return channel.usable() ? channel.of(pixel) : 0;
  };
  const int bytes = header.depth / 8;
  return decodeRows(file, header, image, [&](const unsigned char* from, QRgb* to) {
    for (int x = 0; x < image.width(); ++x, from += bytes) {
      quint32 pixel = 0;
      for (int i = bytes; i-- > 0;) pixel = pixel << 8 | from[i];
      to[x] = qRgba(of(red, pixel), of(green, pixel), of(blue, pixel),
                    alpha.usable() ? alpha.of(pixel) : 255);
    }
  });
}

bool fill(QIODevice& file, const BitmapHeader& header, QImage& image) {
  const bool table =
      header.depth == 1 || header.depth == 2 || header.depth == 4 || header.depth == 8;
  const bool runs = (header.compression == runsOf8 && header.depth == 8) ||
                    (header.compression == runsOf4 && header.depth == 4);
  const Colours colours = coloursOf(file, header);
  file.seek(header.pixelsAt);
  if (runs) return decodeRuns(file, header, colours, image);
  if (header.compression == plain && table) return decodeNumbers(file, header, colours, image);
  if (header.depth == 16 || header.depth == 32 || (header.depth == 24 && !header.compression))
    return decodeMasked(file, header, image);
  return false;
}

}  // namespace

std::optional<BitmapHeader> bitmapHeader(QIODevice& file) {
  if (!file.seek(0)) return std::nullopt;
  const QByteArray begin = file.read(fileHeader + 4);
  if (begin.size() != fileHeader + 4 || !begin.startsWith("BM")) return std::nullopt;
  const quint32 size = Fields(begin).number(fileHeader);
  if (size < os2 || (size > os2 && size < os2Short) || size > longestHeader) return std::nullopt;
  const QByteArray rest = file.read(size - 4);
  if (rest.size() != static_cast<qsizetype>(size - 4)) return std::nullopt;
  const Fields fields(begin.mid(fileHeader) + rest);

  BitmapHeader header;
  const bool small = size == os2;
  header.width = small ? fields.word(4) : static_cast<qint32>(fields.number(4));
  header.height = small ? fields.word(6) : static_cast<qint32>(fields.number(8));
  header.topDown = header.height < 0;
  header.height = std::abs(header.height);
  if (header.width <= 0 || header.height == 0) return std::nullopt;
  header.depth = fields.word(small ? 10 : 14);
  header.compression = fields.number(16);
  header.coloursAt = fileHeader + size;
  const bool apart = byAnyMasks(header.compression) && size < withMasks;
  if (apart) header.coloursAt += header.compression == byMasks ? 12 : 16;
  header.masks = masksOf(
      header, apart ? Fields(file.read(16)) : Fields(rest.mid(windows - 4, withAlpha - windows)),
      size);

  header.colourBytes = small ? 3 : 4;
  const quint32 most = header.depth < 1 || header.depth > 8 ? 0 : 1U << header.depth;
  const quint32 told = fields.number(32);
  header.colours = static_cast<int>(told == 0 ? most : std::min(told, most));
  header.pixelsAt = Fields(begin).number(10);
  if (header.pixelsAt < header.coloursAt)
    header.pixelsAt = header.coloursAt + qint64{header.colours} * header.colourBytes;
  else if (header.colours > 0)
    header.colours = static_cast<int>(std::min<qint64>(
        header.colours, (header.pixelsAt - header.coloursAt) / header.colourBytes));
  constexpr qint64 textureHeader = 20;
  if (file.seek(header.pixelsAt) && file.peek(4) == "FS70") header.pixelsAt += textureHeader;
  return header;
}

QImage decodeBitmap(QIODevice& file) {
  const auto header = bitmapHeader(file);
  if (!header) return {};
  const bool blocks = header->compression == dxt1 || header->compression == dxt3;
  const bool alpha = header->masks[3] != 0 || blocks;
  QImage image(static_cast<int>(header->width), static_cast<int>(header->height),
               alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
  if (image.isNull()) return {};
  if (!blocks) return fill(file, *header, image) ? image : QImage();
  file.seek(header->pixelsAt);
  const auto kind = header->compression == dxt1 ? TextureBlocks::dxt1 : TextureBlocks::dxt3;
  if (!decodeBlocks(file, kind, image)) return {};
  return header->topDown ? image : image.mirrored();
}

}  // namespace skv
