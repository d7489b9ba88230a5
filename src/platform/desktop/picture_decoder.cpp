#include "platform/desktop/picture_decoder.h"

#include <sys/mman.h>
#include <unistd.h>

#include <QImageReader>
#include <QLoggingCategory>
#include <algorithm>
#include <new>

#include "platform/desktop/bitmap_file.h"
#include "platform/desktop/metafile_program.h"
#include "platform/desktop/picture_header.h"
#include "platform/desktop/picture_source.h"
#include "platform/desktop/qt_pixels.h"

namespace skv {

namespace {

// In megabytes, of the decoders: so many pixels of four bytes.
constexpr int mostMegabytes = 400;
// The largest bitmap of that size, with room for anything that a file may hold beside its picture.
constexpr qint64 mostBytes = qint64{1} << 30;
// Each scan of a JPEG file goes over the whole picture: so many pixels in all of them. A picture of
// the largest size has twenty, twice what programs write.
constexpr qint64 mostScannedPixels = 20 * mostPixels;

Outcome invalid(std::string_view name, std::string_view reason) {
  return Outcome::failure(err::invalidPicture, std::string(name) + " " + std::string(reason));
}

// The size with its longest side no longer than that.
QSize fitted(QSize size, int longestSide) {
  if (longestSide <= 0 || std::max(size.width(), size.height()) <= longestSide) return size;
  return size.scaled(longestSide, longestSide, Qt::KeepAspectRatio).expandedTo({1, 1});
}

const char* handlerOf(PictureKind kind) {
  switch (kind) {
    case PictureKind::png:
      return "png";
    case PictureKind::webp:
      return "webp";
    case PictureKind::gif:
      return "gif";
    default:
      return "jpeg";
  }
}

QImage readImage(PictureSource& source, const PictureHeader& header, int longestSide) {
  const bool bitmap = header.kind == PictureKind::bmp;
  source.beginDecoding(bitmap ? PictureSource::Reading::exact : PictureSource::Reading::blocks);
  if (bitmap) return decodeBitmap(source);
  QImageReader reader(&source, handlerOf(header.kind));
  reader.setAutoDetectImageFormat(false);
  reader.setAutoTransform(true);
  if (header.kind == PictureKind::jpeg) {
    source.limitScans(header.end, mostScannedPixels / header.pixels);
    const QSize size(static_cast<int>(header.width), static_cast<int>(header.height));
    if (const QSize smaller = fitted(size, longestSide); smaller != size)
      reader.setScaledSize(smaller);
  }
  QImage image = reader.read();
  // Qt's decoders fill up what is missing.
  return source.ranOut() ? QImage() : image;
}

Result<Pixels> decoded(PictureSource& source, const PictureHeader& header, std::string_view name,
                       int longestSide) {
  QImage image = readImage(source, header, longestSide);
  if (source.stopped()) return Outcome::failure(err::cancelled);
  if (source.error()) return systemFailure(source.error(), name);
  if (image.isNull())
    return invalid(name, source.ranOut() ? "(the file is cut short)"
                                         : "(the file is damaged, or of a kind that is not read)");
  image = flattened(std::move(image));
  if (const QSize smaller = fitted(image.size(), longestSide); smaller != image.size())
    image = image.scaled(smaller, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  return pixelsOf(image);
}

// Once for the program.
void prepareDecoders() {
  static const bool done = [] {
    QImageReader::setAllocationLimit(mostMegabytes);
    // What a decoder thinks of a file is no news for the terminal.
    QLoggingCategory::setFilterRules(
        QStringLiteral("qt.gui.imageio*=false\nqt.imageformats*=false"));
    return true;
  }();
  (void)done;
}

}  // namespace

Result<Pixels> decodePicture(Descriptor file, std::int64_t length, std::string_view name,
                             const std::string& metafileProgram, int longestSide,
                             const std::stop_token& stop) {
  prepareDecoders();
  if (length > mostBytes) return invalid(name, "(the file is too large)");
  PictureSource source(std::move(file), length, stop);
  const auto header = pictureHeader(source);
  if (source.stopped()) return Outcome::failure(err::cancelled);
  if (source.error()) return systemFailure(source.error(), name);
  if (!header) return invalid(name, "(the file holds no JPEG, PNG, WebP, GIF, BMP or WMF picture)");
  if (header->pixels > mostPixels) return invalid(name, "(more than 100 million pixels)");
  try {
    if (header->kind != PictureKind::metafile) return decoded(source, *header, name, longestSide);
    auto drawn = drawMetafile(metafileProgram, source.descriptor(), longestSide, stop);
    if (drawn.ok() || drawn.outcome().number() != err::invalidPicture) return drawn;
    return invalid(name, "(" + drawn.outcome().description() + ")");
  } catch (const std::bad_alloc&) {
    return invalid(name, "(there is not enough memory for it)");
  }
}

Result<Pixels> decodePicture(const QByteArray& bytes, std::string_view name) {
  Descriptor file(::memfd_create("picture", MFD_CLOEXEC));
  if (!file.valid()) return systemFailure(errno, name);
  for (qsizetype done = 0; done < bytes.size();) {
    const auto count =
        retried([&] { return ::write(file.get(), bytes.constData() + done, bytes.size() - done); });
    if (count <= 0) return systemFailure(errno, name);
    done += count;
  }
  return decodePicture(std::move(file), bytes.size(), name, {}, 0, {});
}

}  // namespace skv
