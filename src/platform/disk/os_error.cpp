#include "platform/disk/os_error.h"

#include <unistd.h>

#include <cstring>
#include <string>
#include <utility>

namespace skv {

namespace {

int classicNumber(int error) {
  switch (error) {
    case ENOENT:
      return err::fileNotFound;
    case ENOTDIR:
      return err::pathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case EBUSY:
    case ETXTBSY:
      return err::permissionDenied;
    case EEXIST:
      return err::fileExists;
    case ENOTEMPTY:
    case EISDIR:
    case EXDEV:
    case ELOOP:  // something stands there, whatever it leads to
      return err::pathFileAccess;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return err::diskFull;
    case EMFILE:
    case ENFILE:
      return err::tooManyFiles;
    case ENXIO:
    case ENODEV:
    case ENOMEDIUM:
    case ENOTCONN:
    case ESTALE:
      return err::deviceUnavailable;
    case ENAMETOOLONG:
    case EINVAL:
    case EILSEQ:
      return err::badFileName;
    default:
      return err::deviceIo;
  }
}

}  // namespace

Outcome systemFailure(int error, std::string_view path) {
  return Outcome::failure(classicNumber(error), path);
}

Descriptor::~Descriptor() {
  if (fd_ >= 0) ::close(fd_);
}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  if (this != &other) {
    if (fd_ >= 0) ::close(fd_);
    fd_ = other.release();
  }
  return *this;
}

int Descriptor::release() { return std::exchange(fd_, -1); }

int Descriptor::close() { return ::close(release()) == 0 || errno == EINTR ? 0 : errno; }

}  // namespace skv
