#include "platform/zip/archive_output.h"

#include <unistd.h>

#include <algorithm>

namespace skv {

namespace {

std::string folderOf(const std::string& native) { return native.substr(0, native.rfind('/')); }

}  // namespace

ArchiveOutput::ArchiveOutput(const std::string& native, std::string shown)
    : shown_(std::move(shown)),
      name_(native.substr(native.rfind('/') + 1)),
      file_(folderOf(native)) {
  zip_error_init(&error_);
  if (!file_.ok()) {
    failure_ = systemFailure(errno == ENOENT ? ENOTDIR : errno, shown_);
    return;
  }
  // Who may do what with an older archive may do it with the new one.
  struct stat replaced {};
  if (::stat(native.c_str(), &replaced) == 0) ::fchmod(file_.fd(), replaced.st_mode & 0777);
}

zip_source_t* ArchiveOutput::source() { return zip_source_function_create(answer, this, nullptr); }

Outcome ArchiveOutput::publish(bool replaces) {
  if (!writeOut()) return failure_;
  int error = file_.flush();
  // Only what replaces an older file needs a name of its own for a moment.
  if (error == 0) error = file_.publish(name_, false);
  if (error == EEXIST && replaces) error = file_.publish(name_, true);
  if (error == 0) error = file_.flushFolder();
  return error == 0 ? Outcome() : systemFailure(error, shown_);
}

bool ArchiveOutput::write(const char* bytes, std::size_t count) {
  constexpr std::size_t most = std::size_t{256} << 10U;
  const bool joins = position_ >= waitingStart_ && position_ <= waitingStart_ + waiting_.size();
  if ((!joins || waiting_.size() + count > most) && !writeOut()) return false;
  if (waiting_.empty()) waitingStart_ = position_;
  const auto at = static_cast<std::size_t>(position_ - waitingStart_);
  waiting_.resize(std::max(waiting_.size(), at + count));
  std::copy_n(bytes, count, waiting_.begin() + static_cast<std::ptrdiff_t>(at));
  position_ += count;
  length_ = std::max(length_, position_);
  return true;
}

bool ArchiveOutput::writeOut() {
  for (std::size_t written = 0; failure_.ok() && written < waiting_.size();) {
    const ssize_t done = retried([&] {
      return ::pwrite(file_.fd(), waiting_.data() + written, waiting_.size() - written,
                      static_cast<off_t>(waitingStart_ + written));
    });
    if (done <= 0) {
      const int error = done < 0 ? errno : EIO;
      failure_ = systemFailure(error, shown_);
      zip_error_set(&error_, ZIP_ER_WRITE, error);
    } else {
      written += static_cast<std::size_t>(done);
    }
  }
  waiting_.clear();
  return failure_.ok();
}

zip_int64_t ArchiveOutput::answer(void* user, void* data, zip_uint64_t length,
                                  zip_source_cmd_t command) {
  auto& output = *static_cast<ArchiveOutput*>(user);
  switch (command) {
    case ZIP_SOURCE_STAT:
      // There is no archive yet: libzip is to make one.
      zip_error_set(&output.error_, ZIP_ER_READ, ENOENT);
      return -1;
    case ZIP_SOURCE_BEGIN_WRITE:
    case ZIP_SOURCE_COMMIT_WRITE:
    case ZIP_SOURCE_ROLLBACK_WRITE:
    case ZIP_SOURCE_REMOVE:
    case ZIP_SOURCE_CLOSE:
    case ZIP_SOURCE_FREE:
      return 0;
    case ZIP_SOURCE_WRITE:
      return output.write(static_cast<const char*>(data), length) ? static_cast<zip_int64_t>(length)
                                                                  : -1;
    case ZIP_SOURCE_SEEK_WRITE: {
      const zip_int64_t position = zip_source_seek_compute_offset(output.position_, output.length_,
                                                                  data, length, &output.error_);
      if (position < 0) return -1;
      output.position_ = static_cast<zip_uint64_t>(position);
      return 0;
    }
    case ZIP_SOURCE_TELL_WRITE:
      return static_cast<zip_int64_t>(output.position_);
    case ZIP_SOURCE_ERROR:
      return zip_error_to_data(&output.error_, data, length);
    case ZIP_SOURCE_SUPPORTS:
      return ZIP_SOURCE_SUPPORTS_WRITABLE;
    default:
      zip_error_set(&output.error_, ZIP_ER_OPNOTSUPP, 0);
      return -1;
  }
}

}  // namespace skv
