#include "platform/desktop/picture_header.h"

#include <QByteArray>
#include <algorithm>

#include "platform/desktop/bitmap_file.h"

namespace skv {

namespace {

// Reads numbers; all are 0 once the file has ended.
class Numbers {
 public:
  explicit Numbers(QIODevice& file) : file_(file) {}
  bool ended() const { return ended_; }

  int byte() {
    char c = 0;
    ended_ = ended_ || !file_.getChar(&c);
    return ended_ ? 0 : static_cast<unsigned char>(c);
  }
  int little16() {
    const int low = byte();
    return low | byte() << 8;
  }
  int big16() {
    const int high = byte();
    return high << 8 | byte();
  }
  int little24() {
    const int low = little16();
    return low | byte() << 16;
  }
  qint64 little32() {
    const qint64 low = little16();
    return low | qint64{little16()} << 16;
  }
  qint64 big32() {
    const qint64 high = big16();
    return high << 16 | big16();
  }
  void skip(qint64 bytes) { ended_ = ended_ || !file_.seek(file_.pos() + bytes) || file_.atEnd(); }

 private:
  QIODevice& file_;
  bool ended_ = false;
};

using Header = std::optional<PictureHeader>;

Header sized(PictureKind kind, qint64 width, qint64 height) {
  if (width <= 0 || height <= 0) return std::nullopt;
  return PictureHeader{kind, width, height, width * height, 0};
}

// From the first mark to the one that begins a frame.
Header jpegHeader(Numbers& numbers) {
  constexpr int endOfPicture = 0xD9, scan = 0xDA;
  while (!numbers.ended()) {
    if (numbers.byte() != 0xFF) continue;  // as the decoder does
    int mark = 0xFF;
    while (mark == 0xFF) mark = numbers.byte();
    if (mark == endOfPicture || mark == scan) break;
    if (mark < 0xC0 || (mark >= 0xD0 && mark <= 0xD8)) continue;  // without data
    const int length = numbers.big16();
    const bool frame = mark <= 0xCF && mark != 0xC4 && mark != 0xC8 && mark != 0xCC;
    if (frame) {
      numbers.byte();
      const int height = numbers.big16();
      return sized(PictureKind::jpeg, numbers.big16(), height);
    }
    if (length < 2) break;
    numbers.skip(length - 2);
  }
  return std::nullopt;
}

qint64 colourTable(int flags) { return flags & 0x80 ? qint64{3} << ((flags & 7) + 1) : 0; }

// From the size of the screen to the first picture, which may be larger than the screen says.
Header gifHeader(Numbers& numbers) {
  const int width = numbers.little16(), height = numbers.little16();
  const int flags = numbers.byte();
  numbers.skip(2 + colourTable(flags));
  while (!numbers.ended()) {
    const int block = numbers.byte();
    if (block == '!') {
      numbers.byte();
      while (const int length = numbers.byte()) numbers.skip(length);
    } else if (block == ',') {
      const int left = numbers.little16(), top = numbers.little16();
      const int right = left + numbers.little16(), bottom = top + numbers.little16();
      const auto header = sized(PictureKind::gif, width ? width : right, height ? height : bottom);
      if (!header || right == left || bottom == top) break;
      PictureHeader result = *header;
      result.pixels = std::max(result.pixels, qint64{right} * bottom);
      return result;
    } else {
      break;
    }
  }
  return std::nullopt;
}

// The first chunk tells the size.
Header pngHeader(Numbers& numbers) {
  numbers.skip(8);  // its length and name
  const qint64 width = numbers.big32();
  return sized(PictureKind::png, width, numbers.big32());
}

// By the first chunk: of an extended file, one without loss, or a plain one.
Header webpHeader(QIODevice& file, Numbers& numbers) {
  const QByteArray chunk = file.read(4);
  numbers.skip(4);  // its length
  if (chunk == "VP8X") {
    numbers.skip(4);
    const qint64 width = numbers.little24() + 1;
    return sized(PictureKind::webp, width, numbers.little24() + 1);
  }
  if (chunk == "VP8L") {
    numbers.skip(1);
    const qint64 sizes = numbers.little32();
    return sized(PictureKind::webp, (sizes & 0x3FFF) + 1, (sizes >> 14 & 0x3FFF) + 1);
  }
  if (chunk != "VP8 ") return std::nullopt;
  numbers.skip(6);
  const int width = numbers.little16() & 0x3FFF;
  return sized(PictureKind::webp, width, numbers.little16() & 0x3FFF);
}

Header bmpHeader(QIODevice& file) {
  const auto header = bitmapHeader(file);
  return header ? sized(PictureKind::bmp, header->width, header->height) : std::nullopt;
}

bool isMetafile(const QByteArray& begin) {
  if (begin.startsWith("\xD7\xCD\xC6\x9A")) return true;
  // In memory or on disk, a header of nine words, of Windows 1 or 3.
  return begin.size() >= 6 && (begin[0] == 1 || begin[0] == 2) && begin[1] == 0 && begin[2] == 9 &&
         begin[3] == 0 && begin[4] == 0 && (begin[5] == 1 || begin[5] == 3);
}

Header headerOf(QIODevice& file) {
  constexpr qint64 longestMark = 12;
  const QByteArray begin = file.read(longestMark);
  Numbers numbers(file);
  const auto behind = [&file](qint64 mark) { return file.seek(mark); };
  if (isMetafile(begin)) return PictureHeader{PictureKind::metafile, 0, 0, 0, 0};
  if (begin.startsWith("GIF87a") || begin.startsWith("GIF89a"))
    return behind(6) ? gifHeader(numbers) : std::nullopt;
  if (begin.startsWith("\xFF\xD8\xFF")) return behind(2) ? jpegHeader(numbers) : std::nullopt;
  if (begin.startsWith("\x89PNG\r\n\x1A\n")) return behind(8) ? pngHeader(numbers) : std::nullopt;
  if (begin.startsWith("RIFF") && begin.endsWith("WEBP")) return webpHeader(file, numbers);
  if (begin.startsWith("BM")) return bmpHeader(file);
  return std::nullopt;
}

}  // namespace

std::optional<PictureHeader> pictureHeader(QIODevice& file) {
  auto header = headerOf(file);
  if (header) header->end = file.pos();
  return header;
}

}  // namespace skv
