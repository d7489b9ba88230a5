#include "platform/desktop/qt_pictures.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <QImageReader>
#include <QLoggingCategory>
#include <algorithm>
#include <new>

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

Outcome invalid(std::string_view path, std::string_view reason) {
  return Outcome::failure(err::invalidPicture, std::string(path) + " " + std::string(reason));
}

// The size with its longest side no longer than that.
QSize fitted(QSize size, int longestSide) {
  if (longestSide <= 0 || std::max(size.width(), size.height()) <= longestSide) return size;
  return size.scaled(longestSide, longestSide, Qt::KeepAspectRatio).expandedTo({1, 1});
}

QImage decode(PictureSource& source, const PictureHeader& header, int longestSide) {
  source.beginDecoding(header.kind == PictureKind::bmp ? PictureSource::Reading::exact
                                                       : PictureSource::Reading::blocks);
  QImageReader reader(&source, header.kind == PictureKind::jpeg  ? "jpeg"
                               : header.kind == PictureKind::gif ? "gif"
                                                                 : "bmp");
  reader.setAutoDetectImageFormat(false);
  reader.setAutoTransform(true);
  if (header.kind == PictureKind::jpeg) {
    source.limitScans(header.end, mostScannedPixels / header.pixels);
    const QSize size(static_cast<int>(header.width), static_cast<int>(header.height));
    if (const QSize smaller = fitted(size, longestSide); smaller != size)
      reader.setScaledSize(smaller);
  }
  return reader.read();
}

Result<Pixels> decoded(PictureSource& source, const PictureHeader& header, std::string_view path,
                       int longestSide) {
  QImage image = decode(source, header, longestSide);
  if (source.stopped()) return Outcome::failure(err::cancelled);
  if (source.error()) return systemFailure(source.error(), path);
  if (source.ranOut()) return invalid(path, "(the file is cut short)");
  if (image.isNull()) return invalid(path, "(the file is damaged, or of a kind that is not read)");
  image = flattened(std::move(image));
  if (const QSize smaller = fitted(image.size(), longestSide); smaller != image.size())
    image = image.scaled(smaller, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  return pixelsOf(image);
}

}  // namespace

QtPictureReader::QtPictureReader(const FileSystem& files, std::string metafileProgram)
    : files_(files),
      metafileProgram_(metafileProgram.empty() ? findMetafileProgram()
                                               : std::move(metafileProgram)) {
  QImageReader::setAllocationLimit(mostMegabytes);
  // What a decoder thinks of a file is no news for the terminal.
  QLoggingCategory::setFilterRules(QStringLiteral("qt.gui.imageio*=false"));
}

Result<Pixels> QtPictureReader::read(std::string_view path, int longestSide,
                                     std::stop_token stop) const {
  const auto place = files_.nativePath(path);
  if (!place.ok()) return place.outcome();
  const char* native = place.value().c_str();
  struct stat status {};
  // Looked at first, since opening a device may set something off.
  if (::stat(native, &status) != 0) {
    const int error = errno;
    const auto length = files_.fileLength(path);  // knows what exactly is missing
    return length.ok() ? systemFailure(error, path) : length.outcome();
  }
  if (!S_ISREG(status.st_mode)) return Outcome::failure(err::pathFileAccess, path);
  Descriptor file(
      retried([native] { return ::open(native, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); }));
  if (!file.valid() || ::fstat(file.get(), &status) != 0) return systemFailure(errno, path);
  if (!S_ISREG(status.st_mode)) return Outcome::failure(err::pathFileAccess, path);
  if (status.st_size > mostBytes) return invalid(path, "(the file is too large)");

  PictureSource source(std::move(file), status.st_size, stop);
  const auto header = pictureHeader(source);
  if (source.stopped()) return Outcome::failure(err::cancelled);
  if (source.error()) return systemFailure(source.error(), path);
  if (!header) return invalid(path, "(the file holds no JPEG, GIF, BMP or WMF picture)");
  if (header->pixels > mostPixels) return invalid(path, "(more than 100 million pixels)");
  try {
    if (header->kind != PictureKind::metafile) return decoded(source, *header, path, longestSide);
    auto drawn = drawMetafile(metafileProgram_, source.descriptor(), longestSide, stop);
    if (drawn.ok() || drawn.outcome().number() != err::invalidPicture) return drawn;
    return invalid(path, "(" + drawn.outcome().description() + ")");
  } catch (const std::bad_alloc&) {
    return invalid(path, "(there is not enough memory for it)");
  }
}

std::string QtPictureReader::state(std::string_view path) const {
  const auto place = files_.nativePath(path);
  struct stat status {};
  if (!place.ok() || ::stat(place.value().c_str(), &status) != 0) return {};
  std::string text;
  for (const auto number :
       {static_cast<std::int64_t>(status.st_dev), static_cast<std::int64_t>(status.st_ino),
        status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec, status.st_ctim.tv_sec,
        status.st_ctim.tv_nsec})
    text.append(std::to_string(number)).append(" ");
  return text;
}

}  // namespace skv
