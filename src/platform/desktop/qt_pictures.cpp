#include "platform/desktop/qt_pictures.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "platform/desktop/metafile_program.h"
#include "platform/desktop/picture_decoder.h"

namespace skv {

QtPictureReader::QtPictureReader(const FileSystem& files, std::string metafileProgram)
    : files_(files),
      metafileProgram_(metafileProgram.empty() ? findMetafileProgram()
                                               : std::move(metafileProgram)) {}

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
  return decodePicture(std::move(file), status.st_size, path, metafileProgram_, longestSide, stop);
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
